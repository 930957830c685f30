tell application id "com.omnigroup.OmniFocus4"
    try
        set theTask to task id "fUV9GFRTjhr" of default document
set name of theTask to "Call Ann"
return "Successfully updated task id fUV9GFRTjhr" & " to '" & name & "'"
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
