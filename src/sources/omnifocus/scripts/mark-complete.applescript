set completed_task to task id "{taskID}" of default document
set task_title to name of completed_task
mark complete completed_task
return "Successfully completed task: " & task_title
