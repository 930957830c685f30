tell application id "com.omnigroup.OmniFocus4"
    try
        set reopened_task to task id "fUV9GFRTjhr" of default document
set task_title to name of reopened_task
mark incomplete reopened_task
return "Successfully reopened task: " & task_title
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
