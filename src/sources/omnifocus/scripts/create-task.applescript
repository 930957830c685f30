    -- Configuration: set these values as needed
    set taskName to "{name}"
    set projectName to "{project}"
    set tagName to {tagList}
    {dueDateLines}
    {deferDateLines}

tell application id "{omniFocusBundleID}"
    try
        tell default document
    if projectName is not "" then
        set theProject to first flattened project whose name is projectName
        tell theProject
            set createdTask to make new task with properties {name:taskName}
        end tell
    else
        set createdTask to make new inbox task with properties {name:taskName}
    end if

    -- Set optional tag
    if tagName is not "" then
        set theTag to first flattened tag whose name is tagName
        add theTag to tags of createdTask
    end if

    -- Set optional dates
    if dueDate is not missing value then set due date of createdTask to dueDate
    if deferDate is not missing value then set defer date of createdTask to deferDate

    return id of createdTask
end tell
    on error errMsg
        return "ERROR: " & errMsg
    end try
end tell
