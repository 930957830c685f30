tell application "OmniFocus"
    tell front document
        -- Calculate cutoff date for completed tasks
        set cutoffDate to (current date) - (20 * days)

        -- Create a list to store the task data
        set taskData to {}

        -- Get all completed tasks within the lookback period
        set completedTasks to flattened tasks where (completion date is not missing value and completion date ≥ cutoffDate)

        -- Loop through completed tasks to gather information
        repeat with currentTask in completedTasks
            -- Skip if this is an inbox task
            if in inbox of currentTask then
                -- Skip to next iteration
                set shouldContinue to true
            else
                -- Check if task is itself a project (skip projects)
                if (id of currentTask is not missing value and id of currentTask is equal to id of containing project of currentTask) then
                    set shouldContinue to true
                else
                    set shouldContinue to false
                end if
            end if

            -- Process task if it passes all filters
            if not shouldContinue then
                -- Get project information
                set projectID to ""
                set projectName to ""
                set taskProject to containing project of currentTask
                if taskProject is not missing value then
                    set projectID to id of taskProject
                    set projectName to name of taskProject
                end if

                -- Get tag information
                set tagID to ""
                set tagName to ""
                if (count of tags of currentTask) > 0 then
                    set primaryTag to item 1 of tags of currentTask
                    set tagID to id of primaryTag
                    set tagName to name of primaryTag
                end if

                -- Get the note (safely)
                set taskNote to ""
                try
                    set taskNote to note of currentTask as string
                end try

                -- Format dates as strings
                set dueDateString to ""
                if due date of currentTask is not missing value then
                    set dueDateString to ((due date of currentTask) as string)
                end if

                set completionDateString to ""
                if completion date of currentTask is not missing value then
                    set completionDateString to ((completion date of currentTask) as string)
                end if

                set creationDateString to ((creation date of currentTask) as string)
                set modificationDateString to ((modification date of currentTask) as string)

                -- Format boolean as string
                set flaggedString to "false"
                if flagged of currentTask then
                    set flaggedString to "true"
                end if

                set completedString to "true"
                -- All tasks here are completed since we filtered for completion date

                set deferDateString to ""
                if defer date of currentTask is not missing value then
                    set deferDateString to ((defer date of currentTask) as string)
                end if

                set repeatIntervalDays to 0
                if repetition rule of currentTask is not missing value then
                    set repRule to repetition rule of currentTask
                    set recRule to recurrence of repRule -- RFC 2445 string
                    if recRule is not missing value then
                        -- Extract FREQ and INTERVAL
                        set freqType to ""
                        set intervalCount to 1 -- default

                        -- Split the rule into components
                        set AppleScript's text item delimiters to ";"
                        set ruleParts to text items of recRule

                        repeat with part in ruleParts
                            if part starts with "FREQ=" then
                                set freqType to text ((offset of "=" in part) + 1) thru -1 of part
                            else if part starts with "INTERVAL=" then
                                set intervalText to text ((offset of "=" in part) + 1) thru -1 of part
                                try
                                    set intervalCount to intervalText as integer
                                end try
                            end if
                        end repeat

                        -- Map frequency to days
                        if freqType is "DAILY" then
                            set repeatIntervalDays to intervalCount
                        else if freqType is "WEEKLY" then
                            set repeatIntervalDays to intervalCount * 7
                        else if freqType is "MONTHLY" then
                            set repeatIntervalDays to intervalCount * 30.44 -- approximation
                        else if freqType is "YEARLY" then
                            set repeatIntervalDays to intervalCount * 365.25 -- approximation
                        end if

                        set AppleScript's text item delimiters to "" -- reset
                    end if
                end if

                -- Calculate inferred instance creation date
                set inferredInstanceCreatedDateString to ""
                if repeatIntervalDays > 0 and defer date of currentTask is not missing value then
                    set inferredDate to (defer date of currentTask) - (repeatIntervalDays * days)
                    set inferredInstanceCreatedDateString to (inferredDate as string)
                end if

                -- Create a simple list of strings for this task
                -- Use a delimiter that's unlikely to appear in the data
                set taskString to id of currentTask & "|||" & name of currentTask & "|||" & taskNote & "|||" & dueDateString & "|||" & completionDateString & "|||" & creationDateString & "|||" & modificationDateString & "|||" & flaggedString & "|||" & projectID & "|||" & projectName & "|||" & tagID & "|||" & tagName & "|||" & completedString & "|||" & deferDateString & "|||" & inferredInstanceCreatedDateString

                -- Add to our task list
                set end of taskData to taskString
            end if
        end repeat

        -- Return the task data as a list of strings
        return taskData
    end tell
end tell
