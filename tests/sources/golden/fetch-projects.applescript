tell application id "com.omnigroup.OmniFocus4"
    try
        tell application "OmniFocus"
    tell default document
        set theProjects to flattened projects
        set output to {}

        repeat with aProject in theProjects
            set projectName to name of aProject
            set projectID to id of aProject
            set end of output to projectName & "|||" & projectID
        end repeat

        return output
    end tell
end tell
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
