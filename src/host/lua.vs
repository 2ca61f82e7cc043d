@@ The boot script: compiled by the build, carried by the executable, run once at start.
@@ It defines the script-level library, then runs the game.

Vesper["base"] = Vesper["getPath"]()

@@ A whole file as text, or `not` when there is none.
function Vesper["contentsIfPresent"](path)
    local file = io["open"](path, "r")
    if not file
        return not
    end
    local text = file["read"](file, "*a")
    file["close"](file)
    return text
end

@@ A whole file as text. A missing one fails on the handle.
function Vesper["contents"](path)
    local file = io["open"](path, "r")
    local text = file["read"](file, "*a")
    file["close"](file)
    return text
end

@@ Output of a shell command. Unless raw, on one line without blanks at its ends.
function Vesper["capture"](cmd, raw)
    local pipe = assert(io["popen"](cmd, "r"))
    local text = assert(pipe["read"](pipe, "*a"))
    pipe["close"](pipe)
    if raw
        return text
    end
    text = string["gsub"](text, "^%s+", "")
    text = string["gsub"](text, "%s+$", "")
    return string["gsub"](text, "[\n\r]+", " ")
end

function Vesper["round"](num, numDecimalPlaces)
    return toNumber(string["format"]("%." + (numDecimalPlaces or 0) + "f", num))
end

function Vesper["clamp"](num, min, max)
    if num > max
        return max
    end
    if num < min
        return min
    end
    return num
end

@@ A chunk of the text; raises when it does not load.
function vesperLoadChunkOrError(scriptText, chunkName)
    local chunk = load(scriptText)
    if not chunk
        error("Failed to load script chunk: " + chunkName)
    end
    return chunk
end

@@ The debug log is live only while `debugger` is true.
function Vesper["logPush"](message)
    if debugger == true
        if debuglog == ""
            debuglogCount = 0
            debuglog = "LOG: " + VESPER_PROCESSOR_NAME + ":" + VESPER_OS_PLATFORM + ":" + VESPER_OS_VERSION + "\n"
        end
        debuglogCount += 1
        debuglog += debuglogCount + ": " + message + "\n"
    end
end

function Vesper["flushDebugLog"]()
    if debugger == true
        if debuglog != ""
            print(debuglog)
        end
        debuglog = ""
        debuglogCount = 0
    end
end

@@ The self-test of a development tree.
if not VESPERBOOT_ENABLED
    local selftest = Vesper["contentsIfPresent"](Vesper["base"] + "../Resources/scripts/vesperscript-selftest.vs")
    if selftest and selftest != ""
        Vesper["runScript"](selftest)
    end
end

framebufferScale = 0.5
skipwarning = false

@@ The settings chunk is a plain script.
if true
    local settings = Vesper["contentsIfPresent"](Vesper["base"] + "../Resources/volatile/save-1.plush")
    if settings
        local chunk = vesperLoadChunkOrError(settings, "save-1.plush")
        chunk()
    end
end

if Metal and Metal["forceUpdate"]
    vesperForceUpdate = Metal["forceUpdate"]
    function Metal["forceUpdate"]()
        Vesper["flushDebugLog"]()
        return vesperForceUpdate()
    end
end

append = Vesper["base"] + "../Resources/package"
nobmp = append + "/ui/no.png"
blankpc = append + "/ui/blank.png"
VESPER_FRAMEBUFFER = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 0)

debuglog = ""
debuglogCount = 0

cstrawberry = {255, 90, 120, 255}
cbrownink = {84, 72, 54, 240}
cclear = {0, 0, 0, 0}
cwhite = {255, 255, 255, 255}
cblack = {0, 0, 0, 255}
framecolour = cstrawberry

math["randomseed"](543486374)

@@ From here on it is the game's. What its set-up raises ends the start as it is; what the game itself raises
@@ goes the same way once it has been caught.
runFile(Vesper["base"] + "../Resources/package/graphics.vs")

if true
    local finished, reason = pcall(runFile, Vesper["base"] + "../Resources/scripts/" + VESPER_SCRIPT)
    if not finished
        error(reason)
    end
end
