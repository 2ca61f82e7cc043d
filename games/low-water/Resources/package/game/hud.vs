@@ What lies over the picture while one walks: five small lamps, the word for what Enter does, the chart.

hudKey = ""
lampIcons = {}

function lampIcon(name)
    if lampIcons[name] == not
        local icon = Plush["createImage"](64, 64, 0, 0, 0, 0)
        Plush["blitImage"](icon, textures[texture("lamp-" + name) + 1], 0, 0, false, 1, 0)
        lampIcons[name] = icon
    end
    return lampIcons[name]
end

@@ Only what has changed is set anew.
function showHud()
    local key = ""
    if doorNear != not
        key = doorNear["prompt"]
    end
    if key == hudKey
        return not
    end
    hudKey = key
    dropEntries("hud")
    if key != ""
        addText("hud", "Enter: " + key, smallFont, lampGold, 0, 354, VESPER_SCREEN_X)
    end
end

function hideHud()
    hudKey = ""
    dropEntries("hud")
end

function drawLampRow()
    for i, name in ipairs(LAMPS)
        local isHome = contains(night["home"], name)
        local shown = isHome
        for lamp in lampStates
            if lamp["name"] == name and lamp["state"] == "follows"
                shown = true
            end
        end
        local x = 16 + (i - 1) * 34
        if isHome
            Plush["blitImage"](VESPER_FRAMEBUFFER, textures[texture("pane-" + name) + 1], x + 8, 18, true, 0.5, 0)
        elseif shown
            Plush["blitImage"](VESPER_FRAMEBUFFER, lampIcon(name), x, 12, true, 0.5, 0)
        else
            Plush["blitImage"](VESPER_FRAMEBUFFER, textures[texture("pane-dark") + 1], x + 8, 18, true, 0.5, 0)
        end
    end
end

function drawHud()
    drawLampRow()
    drawChart()
end
