@@ Finds a page again in a story that was edited after it was kept.

@@ Position of a name: itself, or the same words elsewhere.
function novelFindName(name)
    if novelLines[name] != not
        return novelLines[name]
    end
    local others = novelPrints[novelPrintOf(name)]
    if others != not
        return novelLines[others[1]]
    end
    return not
end

@@ Of pages with the same words the one between the same neighbours, else the one of that very name.
function novelFindAmongTwins(name, order)
    local twins = novelPrints[novelPrintOf(name)]
    if twins == not or #twins == 1
        return novelFindName(name)
    end
    local was = novelIndexOf(order, name)
    local best = novelFindName(name)
    local most = 0
    for twin in twins
        local fresh = novelOrder(novelLines[twin]["scene"])
        local is = novelIndexOf(fresh, twin)
        local alike = novelAlike(order[was - 1], fresh[is - 1]) * 2 + novelAlike(order[was + 1], fresh[is + 1]) * 2
        if twin == name
            alike += 1
        end
        if alike > most
            most = alike
            best = novelLines[twin]
        end
    end
    return best
end

function novelAlike(one, other)
    if one == not or other == not
        return 0
    end
    if novelPrintOf(one) == novelPrintOf(other)
        return 1
    end
    return 0
end

@@ Index of a name among others, 0 for none.
function novelIndexOf(names, name)
    for i, other in ipairs(names)
        if other == name
            return i
        end
    end
    return 0
end

@@ The position of a page by its name, its scene, and the names of that scene's pages when it was kept; and whether
@@ it is that page itself. Nothing when no page of the scene is left anywhere.
function novelFind(name, scene, order)
    local exact = novelFindAmongTwins(name, order)
    if exact != not
        return exact, true
    end
    local was = novelIndexOf(order, name)
    for distance = 1, #order
        local before = order[was - distance]
        if before != not and novelFindName(before) != not
            return novelBetween(order, was, distance), false
        end
        local after = order[was + distance]
        if after != not and novelFindName(after) != not
            return novelFindName(after), false
        end
    end
    if novelEntries[scene] != not
        return {scene = scene, at = 1}, false
    end
    return not, false
end

@@ The page stood `distance` behind one that is still there. Where as many pages lie between that one and the next
@@ that is known as did before, they were reworded, and it is the one in the same place; else the first of them is
@@ taken: reading some lines twice loses nothing.
function novelBetween(order, was, distance)
    local from = novelFindName(order[was - distance])
    local fresh = novelOrder(from["scene"])
    local first = novelIndexOf(fresh, novelEntryAt(from)["name"])
    for further = 1, #order - was
        local after = novelFindName(order[was + further])
        if after != not
            local next = novelIndexOf(fresh, novelEntryAt(after)["name"])
            if next - first == distance + further
                return novelLines[fresh[first + distance]]
            end
            break
        end
    end
    if was == #order and #fresh - first == distance
        return novelLines[fresh[first + distance]]
    end
    return novelLines[fresh[math["min"](first + 1, #fresh)]]
end
