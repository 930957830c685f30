tell application id "com.omnigroup.OmniFocus4"
    set testValue to "PermissionCheckOK"
    return testValue
end tell
