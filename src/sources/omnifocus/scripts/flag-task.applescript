set theTask to task id "{taskID}" of default document
set flagged of theTask to {true or false}
return "Successfully updated flag on task id {taskID} {true or false}"
