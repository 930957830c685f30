tell application id "com.omnigroup.OmniFocus4"
    try
        tell application "OmniFocus"
    tell default document
        set allTags to flattened tags
        set output to {}

        repeat with aTag in allTags
            set tagName to name of aTag
            set tagID to id of aTag
            set end of output to tagName & "|||" & tagID
        end repeat

        return output
    end tell
end tell
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
