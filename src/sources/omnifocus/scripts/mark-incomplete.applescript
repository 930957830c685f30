set reopened_task to task id "{taskID}" of default document
set task_title to name of reopened_task
mark incomplete reopened_task
return "Successfully reopened task: " & task_title
