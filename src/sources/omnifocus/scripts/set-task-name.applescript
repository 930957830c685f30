set theTask to task id "{taskID}" of default document
set name of theTask to "{name}"
return "Successfully updated task id {taskID}" & " to '" & name & "'"
