@@ The story as one run of pages. A page may have
@@   say, who        what is said, and by whom; without `who` it is told
@@   runes           one line in the old letters instead
@@   place, cast     where, and who stands in the four slots, until another page says otherwise
@@   when, unless    a choice that must, or must not, have been made for the page to count
@@   mark, go        a name to go to, and the mark that follows instead of the next page
@@   choose          choices: each with say, sets (what is remembered) and go
@@   sound, ending   a sound, and the ending that follows

pages = []
marks = {}
pagenum = 0

function story(scene, list)
    for i, page in ipairs(list)
        page["scene"] = scene
        push(pages, page)
        if page["mark"] != not
            marks[page["mark"]] = #pages
        end
    end
end

function counts(page)
    if page["when"] != not and not remembers(page["when"])
        return false
    end
    return page["unless"] == not or not remembers(page["unless"])
end

function pageAfter(number)
    local page = pages[number]
    if page != not and counts(page) and page["go"] != not
        return marks[page["go"]]
    end
    return number + 1
end

@@ The first page from `number` on that has something to show.
function nextShown(number)
    while number <= #pages and (not counts(pages[number]) or pages[number]["say"] == not and pages[number]["runes"] == not)
        number = pageAfter(number)
    end
    return number
end

function turnTo(number)
    number = nextShown(number)
    if number > #pages
        openTitle()
        return not
    end
    local page = pages[number]
    local wanted = page["cast"] or copyOfCast()
    if page["place"] != not and page["place"] != placeName
        dissolve(16, boxIsUp())
        enterPlace(page["place"])
    elseif differs(wanted)
        dissolve(7, boxIsUp())
    end
    pagenum = number
    castPage(page, wanted)
    if page["sound"] != not
        playSound(page["sound"])
    end
    showBox(page)
end

function copyOfCast()
    return [cast[1], cast[2], cast[3], cast[4]]
end

function differs(wanted)
    for slot = 1, 4
        if wanted[slot] != cast[slot]
            return true
        end
    end
    return false
end

@@ While nobody on the stage speaks, nobody is dimmed.
function castPage(page, wanted)
    local speaker = page["who"] or ""
    for slot = 1, 4
        page["active" + slot] = speaker == "" or not contains(wanted, speaker) or wanted[slot] == speaker
    end
    setCast(wanted, page)
end

function stepPages()
    stepWeather()
    stepCamera()
    if pressed["back"] or pressed["menu"]
        openPause()
        return not
    end
    stepBox()
    if #items > 0
        stepItems()
    elseif pressed["go"] or pressed["click"]
        goOn()
    end
end

function goOn()
    if not cameraRests() or boxIsSliding()
        yOffset = CAMERA_DOWN
        if boxIsSliding()
            finishBox()
        end
    elseif pages[pagenum]["ending"] != not
        openEnding(pages[pagenum]["ending"])
    elseif pages[pagenum]["choose"] == not
        turnTo(pageAfter(pagenum))
    end
end

function makeChoice(item)
    if item["sets"] != not
        memory[item["sets"]] = true
    end
    hideItems()
    turnTo(marks[item["go"]])
end

function beginStory()
    forget()
    mode = VESPER_GAME_VISUAL_NOVEL
    turnTo(1)
end
