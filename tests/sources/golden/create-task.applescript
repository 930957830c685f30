    -- Configuration: set these values as needed
    set taskName to "Say \"hi\"\n\tand C:\\ “too” 🥛"
    set projectName to "Home"
    set tagName to {"errand", "a \"b\""}
    set dueDate to (current date)
set year of dueDate to 2026
set month of dueDate to 12
set day of dueDate to 24
set hours of dueDate to 18
set minutes of dueDate to 5
set seconds of dueDate to 9
    set deferDate to missing value

tell application id "com.omnigroup.OmniFocus4"
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
