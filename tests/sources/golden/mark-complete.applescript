tell application id "com.omnigroup.OmniFocus4"
    try
        set completed_task to task id "fUV9GFRTjhr" of default document
set task_title to name of completed_task
mark complete completed_task
return "Successfully completed task: " & task_title
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
