tell application id "{omniFocusBundleID}"
    try
        {body}
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
