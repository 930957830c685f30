tell application id "com.omnigroup.OmniFocus4"
    try
        set theTask to task id "fUV9GFRTjhr" of default document
set flagged of theTask to true
return "Successfully updated flag on task id fUV9GFRTjhr true"
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
