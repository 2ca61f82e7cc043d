@@ Looks through all pages in every language and text size: what they name is there, what they say has room; and
@@ makes all choices.

function check(holds, where, what)
    if not holds
        print(settings["language"] + " " + settings["textSize"] + ", " + where + ": " + what)
    end
end

@@ The box may grow as far as it leaves the choices room.
function checkPage(entry, where)
    check(entry["sound"] == not or novelIsThere(append + "/audio/" + (entry["sound"] or "") + ".wav"), where, "no such sound")
    if entry["text"] != not
        local font = "tell"
        if entry["who"] != not
            font = "words"
        end
        local wrapped, lines = novelWrap(novelTextOf(entry), font, NOVEL_WORDS_WIDE)
        local high = lines * novelLineHeight(font) + 40
        check(high <= 270, where, "a box " + high + " high")
        check(settings["textSize"] > 1 or high <= NOVEL_BOX_HIGH + 40, where, lines + " lines")
    end
    for option in entry["choice"] or []
        check(novelTextWidth(novelOptionText(entry, option), "item") < 640, where, "a choice is too wide")
    end
    check(settings["language"] == "en" or entry["text"] == not or novelByName[entry["name"] + "|"] != not, where, "no translation")
end

function checkAll()
    for scene in novelScenes
        for at, entry in ipairs(novelEntries[scene])
            checkPage(entry, scene + " " + at)
        end
    end
end

@@ The ending that these choices, counted from 1, lead to.
function endingAfter(picks)
    novelStart()
    local made = 0
    while novelHere()["ending"] == not
        if novelHere()["choice"] != not
            made += 1
            novelChoose(novelHere()["choice"][picks[made]])
        else
            novelGoOn()
        end
    end
    return novelHere()["ending"]
end

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    for language in ["en", "de"]
        settings["language"] = language
        novelSetLanguage(language)
        for size = 1, 3
            settings["textSize"] = size
            novelOpenFonts()
            checkAll()
        end
    end
    for told = 1, 2
        for asked = 1, 2
            for promised = 1, 2
                local first = endingAfter([told, asked, promised, 1])
                local chosen = ""
                for name in ["told", "asked", "promised"]
                    if novelHolds(name)
                        chosen += " " + name
                    end
                end
                print(string["sub"](chosen, 2) + ": " + first + " " + endingAfter([told, asked, promised, 2]))
            end
        end
    end
    novelPlaying = false
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
