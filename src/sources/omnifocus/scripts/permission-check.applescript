tell application id "{omniFocusBundleID}"
    set testValue to "PermissionCheckOK"
    return testValue
end tell
