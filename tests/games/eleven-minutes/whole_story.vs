@@ Looks through all pages: what they name is there, and what they say fits into its box.

function check(holds, number, what)
    if not holds
        print("page " + number + ": " + what)
    end
end

function checkPage(page, number)
    check(page["place"] == not or places[page["place"]] != not, number, "no such place")
    check(page["who"] == not or people[page["who"]] != not, number, "no such speaker")
    check(page["go"] == not or marks[page["go"]] != not, number, "goes nowhere")
    check(page["ending"] == not or endings[page["ending"]] != not, number, "no such ending")
    check(page["sound"] == not or isThere(append + "/audio/" + page["sound"] + "-full.wav"), number, "no such sound")
    for i, name in ipairs(page["cast"] or [])
        check(name == "" or people[name] != not, number, "nobody by that name")
    end
    if page["say"] != not
        local font = tellFont
        if page["who"] != not
            font = wordFont
        end
        checkFit(wrap(page["say"], font, WORDS_WIDE), number)
    end
    for i, choice in ipairs(page["choose"] or [])
        check(marks[choice["go"]] != not, number, "a choice goes nowhere")
        check(textWidth(choice["say"], itemFont) < CHOICE_WIDE - 20, number, "a choice is too wide")
    end
end

function checkFit(text, number)
    local lines = 1
    for i = 1, #text
        if text[i] == "\n"
            lines += 1
        end
    end
    check(lines <= 3, number, "more than three lines")
end

@@ The ending that these choices, counted from 1, lead to.
function endingAfter(picks)
    forget()
    local made = 0
    local number = nextShown(1)
    while pages[number]["ending"] == not
        local page = pages[number]
        if page["choose"] != not
            made += 1
            local choice = page["choose"][picks[made]]
            if choice["sets"] != not
                memory[choice["sets"]] = true
            end
            number = nextShown(marks[choice["go"]])
        else
            number = nextShown(pageAfter(number))
        end
    end
    return pages[number]["ending"]
end

realUpdate = Metal["updateInput"]
function Metal["updateInput"]()
    realUpdate()
    for number, page in ipairs(pages)
        checkPage(page, number)
    end
    for told = 1, 2
        for asked = 1, 2
            for promised = 1, 2
                local first = endingAfter([told, asked, promised, 1])
                local chosen = ""
                for i, name in ipairs(["told", "asked", "promised"])
                    if remembers(name)
                        chosen += " " + name
                    end
                end
                print(string["sub"](chosen, 2) + ": " + first + " " + endingAfter([told, asked, promised, 2]))
            end
        end
    end
    playing = false
end
runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
