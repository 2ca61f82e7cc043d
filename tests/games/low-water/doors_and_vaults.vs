@@ Holds every lamp against every door, digs vaults, and draws names.

function testNight()
    table["sort"](SIGNS)
    local refused = 0
    local silent = 0
    for lamp in SIGNS
        for door in SIGNS
            local fits, words = judged(lamp, door, "Alder")
            if fits
                print(lamp + " " + door)
            else
                refused += 1
                if #words < 20
                    silent += 1
                end
            end
        end
    end
    print("refused", refused, silent)
    local reached = 0
    for seed = 1, 12
        makeVaults(seed)
        local rows = []
        for y = 1, VAULTS_WIDE
            rows[y] = []
            for x = 1, VAULTS_WIDE
                rows[y][x] = places["vaults"]["walls"][x][y]
            end
        end
        if Floormap["checkPath"](3, 3, VAULTS_WIDE - 2, VAULTS_WIDE - 2, rows)
            reached += 1
        end
    end
    print("vaults", 12, reached)
    local names = []
    local fine = true
    local listed = string["gmatch"](Vesper["contents"](append + "/words/families.txt"), "%a+")
    for seed = 1, 12
        math["randomseed"](seed)
        for name in drawFamilies()
            push(names, name)
            fine = fine and #name >= 5 and #name <= 11 and not contains(listed, name) and string["match"](name, "^%u%l+$") == name
        end
    end
    print("families", #names, fine)
end

runFile("night.vs")
