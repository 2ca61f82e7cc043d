@@ Methods are those of the global table, whatever a caller calls `string`.
function shout(word)
    return word["upper"]()
end
function caller(string)
    local result = shout(string)
    for string = 1, 1
        result = result + shout("b")
    end
    return result
end
print(caller("a"))                                                      @@ expect: AB
