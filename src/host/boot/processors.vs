@@ Tunes the engine by the processor's name: workers for pixels, and the pace of frames.

function vesperProcessorNameMatches(detectedName, tableName)
    if detectedName == tableName
        return true
    end
    if typeOf(detectedName) != "string" or typeOf(tableName) != "string"
        return false
    end
    if string["sub"](detectedName, 1, #tableName) != tableName
        return false
    end
    local rest = string["sub"](detectedName, #tableName + 1)
    for i, suffix in ipairs({" r", " rev", " part", " version", " implementer"})
        if string["sub"](rest, 1, #suffix) == suffix
            return true
        end
    end
    return false
end

@@ Takes what a shell command prints, if it prints anything. Nothing reaches the console.
function vesperShellAnswer(command, present)
    if typeOf(present) == "string" and present != ""
        return present
    end
    return Vesper["capture"](command + " 2>/dev/null")
end

function vesperNormaliseAppleName(model)
    for generation = 5, 1, -1
        for i, form in ipairs({" Ultra", " Max", " Pro", ""})
            if string["find"](model, "M" + generation + form, 1, true)
                return "Apple M" + generation + form
            end
        end
    end
    if string["find"](model, "12", 1, true)
        return "Apple A12Z Bionic"
    end
    if string["find"](model, "18", 1, true)
        return "Apple A18 Pro"
    end
    return "Apple processor"
end

vesperBootHardwareThreads = 1
if VESPERBOOT_ENABLED
    vesperHardware = hardware("cpu")
    VESPER_PROCESSOR_NAME = "Tessalite"
    if typeOf(vesperHardware) == "table"
        VESPER_PROCESSOR_NAME = vesperHardware["name"] or VESPER_PROCESSOR_NAME
        if (vesperHardware["threads"] or 0) > 0
            vesperBootHardwareThreads = vesperHardware["threads"]
        end
    end
    VESPER_OS_PLATFORM = "LindrelOS Tessalite"
    VESPER_OS_VERSION = "Tessalite"
elseif not VESPER_WINDOWS_ENABLED
    VESPER_PROCESSOR_NAME = vesperShellAnswer("sysctl -n machdep.cpu.brand_string", VESPER_PROCESSOR_NAME)
    VESPER_OS_PLATFORM = vesperShellAnswer("echo $(uname -s) $(uname -m)", VESPER_OS_PLATFORM)
    VESPER_OS_VERSION = vesperShellAnswer("sw_vers -productVersion", VESPER_OS_VERSION)
end

if not VESPERBOOT_ENABLED and VESPER_PROCESSOR_NAME == "machdep: class is not implemented"
    VESPER_PROCESSOR_NAME = Vesper["capture"]("system_profiler SPHardwareDataType 2>/dev/null | grep \"Processor Name\"")
    for i, generation in ipairs({"G3", "G4", "G5"})
        if string["find"](VESPER_PROCESSOR_NAME, generation, 1, true)
            VESPER_PROCESSOR_NAME = "PowerPC " + generation
        end
    end
end

if typeOf(VESPER_PROCESSOR_NAME) == "string"
    if string["find"](VESPER_PROCESSOR_NAME, "Intel", 1, true) or string["find"](VESPER_PROCESSOR_NAME, "Unknown", 1, true)
        VESPER_PROCESSOR_NAME = "Unknown Intel"
    end
end

vesperOnLinux = typeOf(VESPER_OS_PLATFORM) == "string" and string["find"](VESPER_OS_PLATFORM, "Linux", 1, true) != not
@@ Only 64-bit Arm machines can be Apple's: the others start without asking a shell.
if vesperOnLinux and not VESPERBOOT_ENABLED and string["find"](VESPER_OS_PLATFORM, "aarch64", 1, true)
    if string["find"](Vesper["capture"]("lscpu 2>/dev/null | grep 'Vendor ID'"), "Apple", 1, true)
        VESPER_PROCESSOR_NAME = vesperNormaliseAppleName(Vesper["capture"]("lscpu 2>/dev/null | grep 'Model name'"))
        VESPER_OS_VERSION = Vesper["capture"]("uname -r")
    end
end

maxFramerate = VESPER_FRAMERATE
