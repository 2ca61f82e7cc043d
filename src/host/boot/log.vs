@@ The debug log of scripts: gathered while `debugger` is true, printed when the window is updated.

debuglog = ""
debuglogCount = 0

function Vesper["logPush"](message)
    if debugger != true
        return
    end
    if debuglog == ""
        debuglogCount = 0
        debuglog = "LOG: " + VESPER_PROCESSOR_NAME + ":" + VESPER_OS_PLATFORM + ":" + VESPER_OS_VERSION + "\n"
    end
    debuglogCount += 1
    debuglog += debuglogCount + ": " + message + "\n"
end

function Vesper["flushDebugLog"]()
    if debugger != true
        return
    end
    if debuglog != ""
        print(debuglog)
    end
    debuglog = ""
    debuglogCount = 0
end

function Vesper["appendDebugFile"](path, message)
    local file = io["open"](path, "a")
    if file
        file["write"](file, message, "\n")
        file["close"](file)
    end
end
