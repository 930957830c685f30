tell application "OmniFocus"
    tell front document
        -- Convert parameter to integer and calculate date
        set cutoffDate to (current date) - ((3.0 * days) - 1)

        -- Create a list to store the task data
        set taskData to {}

        -- Get all tasks that match our criteria with defer date condition
        set allTasks to flattened tasks where ((completed is false) and (defer date is missing value or defer date ≤ (current date))) or (completion date ≥ cutoffDate)

        -- Loop through tasks to gather information
        repeat with currentTask in allTasks
            -- Skip if this is an inbox task
            if in inbox of currentTask then
                -- Skip to next iteration
                set shouldContinue to true
            else
                -- Check more conditions
                set shouldContinue to false

                -- Skip tasks that are themselves projects
                if (id of currentTask is not missing value and id of currentTask is equal to id of containing project of currentTask) then
                    set shouldContinue to true
                end if

                -- Skip tasks that are blocked
                -- if not shouldContinue then
                --    if blocked of currentTask is true then
                --        set shouldContinue to true
                --    end if
                -- end if

                -- Skip tasks in non-active projects
                if not shouldContinue then
                    set taskProject to containing project of currentTask
                    if taskProject is not missing value then
                        if status of taskProject ≠ active status then
                            set shouldContinue to true
                        end if
                    end if
                end if

                -- Skip tasks that are deferred
                if not shouldContinue then
                    if defer date of currentTask is not missing value then
                        set taskDeferDate to defer date of currentTask
                        set currentDate to current date

                        if taskDeferDate > currentDate then
                            set shouldContinue to true
                        end if
                    end if
                end if

                -- Skip tasks that are effectively deferred
                if not shouldContinue then
                    if effective defer date of currentTask is not missing value then
                        set taskDeferDate to effective defer date of currentTask
                        set currentDate to current date

                        if taskDeferDate > currentDate then
                            set shouldContinue to true
                        end if
                    end if
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

                set completedString to "false"
                if completion date of currentTask is not missing value then
                    set completedString to "true"
                end if

                set deferDateString to ""
                if defer date of currentTask is not missing value then
                    set deferDateString to ((defer date of currentTask) as string)
                end if

                set repeatIntervalDays to 0
                if repetition rule of currentTask is not missing value then
                    set isRepeating to true
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
                else
                    set isRepeating to false
                end if

                -- Calculate inferred instance creation date
                set inferredInstanceCreatedDateString to ""
                if repeatIntervalDays > 0 and defer date of currentTask is not missing value then
                    set inferredDate to (defer date of currentTask) - (repeatIntervalDays * days)
                    set inferredInstanceCreatedDateString to (inferredDate as string)
                end if

                -- Create a simple list of strings for this task
                -- Use a delimiter that's unlikely to appear in the data
                set taskString to id of currentTask & "|||" & name of currentTask & "|||" & taskNote & "|||" & dueDateString & "|||" & completionDateString & "|||" & creationDateString & "|||" & modificationDateString & "|||" & flaggedString & "|||" & projectID & "|||" & projectName & "|||" & tagID & "|||" & tagName & "|||" & completedString & "|||" & deferDateString & "|||" & inferredInstanceCreatedDateString & "|||" & isRepeating

                -- Add to our task list
                set end of taskData to taskString
            end if
        end repeat


        -- Return the task data as a list of strings
        return taskData
    end tell
end tell
