    tell application "OmniFocus"
        tell default document
            set dueSoonInterval to value of setting id "DueSoonInterval"
            set dueSoonTime to value of setting id "DefaultDueTime"
            set dueSoonDays to dueSoonInterval / 86400 -- Convert seconds to days
            return "" & dueSoonDays & "|" & dueSoonTime
        end tell
    end tell
