@@ Names and inscriptions by the text model. It learns from two lists while the title is shown. Each night thins the
@@ model by its own numbers until one way leads on from each state, so the same night always has the same words.

FAMILY_ORDER = 3
@@ Long enough that lines meet only where they have words in common.
STONE_ORDER = 9
families = not
stones = not
GIVEN = ["Agnes", "Amos", "Barnaby", "Clemency", "Dorcas", "Edmund", "Esther", "Giles", "Hester", "Isaac", "Jonas", "Kezia", "Luke", "Mercy", "Nathan", "Oriel", "Prudence", "Reuben", "Susannah", "Tobit", "Ursula", "Walter"]

function startLearning()
    familyJob = AI["generateAsync"](not, append + "/words/families.txt", true, not, not, not, not, not, not, FAMILY_ORDER)
    stoneJob = AI["generateAsync"](not, append + "/words/stones.txt", true, not, not, not, not, not, not, STONE_ORDER)
end

function learned(job)
    while true
        local done, ok, text, model, problem = AI["checkJob"](job)
        if done and ok
            return model
        elseif done
            tellMissing("The words of the parish are missing.")
            return {}
        end
        Vesper["sleep"](1)
    end
end

function finishLearning()
    if families == not
        families = learned(familyJob)
        stones = learned(stoneJob)
    end
end

@@ One successor for each state, drawn by how often it follows.
function thinned(model)
    local thin = {}
    for state, successors in pairs(model)
        local total = 0
        for next, count in pairs(successors)
            total += count
        end
        local draw = random(total)
        for next, count in pairs(successors)
            if draw > 0
                draw -= count
                if draw <= 0
                    thin[state] = {[next] = 1}
                end
            end
        end
    end
    return thin
end

@@ States that begin a line.
function beginnings(model)
    local list = []
    for state, successors in pairs(model)
        if string["sub"](state, 1, 1) == "\n"
            push(list, state)
        end
    end
    return list
end

@@ A line of the model between so many bytes that none of the lines of `taken` is.
function drawLine(model, order, least, most, taken)
    local starts = beginnings(model)
    if #starts == 0
        return not
    end
    for try = 1, 60
        local line = AI["generateText"](starts[random(#starts)], thinned(model), most + 1, "\n", order)
        line = string["sub"](line, 2)
        if #line >= least and #line <= most and not contains(taken, line)
            return line
        end
    end
    return not
end

function listedLines(name)
    local path = append + "/words/" + name + ".txt"
    if isThere(path)
        return string["gmatch"](Vesper["contents"](path), "re:[^\n]+")
    end
    return []
end

PLAIN_FAMILIES = ["Alder", "Rowan", "Sallow", "Hazel", "Thorn"]

@@ Five families, none of them as it stands in the list.
function drawFamilies()
    local taken = listedLines("families")
    local drawn = []
    for i = 1, 5
        local name = drawLine(families, FAMILY_ORDER, 5, 11, taken) or PLAIN_FAMILIES[i]
        push(taken, name)
        push(drawn, name)
    end
    return drawn
end

function drawStones(count)
    local drawn = []
    local taken = listedLines("stones")
    for i = 1, count
        local line = drawLine(stones, STONE_ORDER, 18, 84, taken) or "whose name the water has"
        push(taken, line)
        local family = drawLine(families, FAMILY_ORDER, 5, 11, []) or "Alder"
        push(drawn, GIVEN[random(#GIVEN)] + " " + family + ", " + line + ".")
    end
    return drawn
end
