@@ Tables of translations: reading them, switching while the game runs, lines that are marked, damaged tables.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

function writeTable()
    local name = "inn." + novelFingerprint("|Rain ran down the panes.")
    local table = "# a table\nmsgid \"\"\nmsgstr \"Language: de\\n\"\n\nmsgctxt \"" + name + "\"\nmsgid \"Rain ran down the panes.\"\nmsgstr \"\"\n\"Regen lief \"\n\"die Scheiben hinab.\"\n\n"
    table += "#, fuzzy\nmsgctxt \"elsewhere\"\nmsgid \"A room?\"\nmsgstr \"Ein \\\"Zimmer\\\"?\"\n\n#~ msgid \"The road went on.\"\n#~ msgstr \"Weg.\"\n\nmsgctxt \"x\"\nmsgid \"No, thank you\"\nmsgstr \"Nein, danke\"\n\nmsgctxt \"menu\"\nmsgid \"Menu\"\nmsgstr \"Speisekarte\"\n"
    Vesper["replaceFile"](append + "/translations/de.po", table)
    novelLanguages = [["en", "English"], ["de", "Deutsch"]]
end

function german()
    settings["language"] = "de"
    novelApplySettings("language")
end

function english()
    settings["language"] = "en"
    novelApplySettings("language")
end

function tellWords()
    print(novelSay("Menu"), novelSay("Settings"), novelSay("No such word"))
end

function readDamaged()
    for text in ["", "msgid \"a\"", "msgid \"a\nmsgstr \"b\"\n", "msgstr \"b\"\nmsgid", "rubbish\nmsgid \"a\"\nmsgstr \"b\"\nmore \"x\"", "\"loose\"", "msgid \"a\"\nmsgid \"b\"\nmsgstr \"c\\\""]
        local entries, faults = novelReadPo(text)
        print(#entries, faults)
    end
end

playSteps([
    "wait 20", "return", "return", "return", tellPage, writeTable, german, tellPage, tellWords, "return", "return", "wait 16", tellPage, english, "wait 3", tellPage, tellWords, readDamaged
])
