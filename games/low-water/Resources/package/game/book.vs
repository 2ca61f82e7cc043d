@@ The parish book is written in Rwby; this asks it.

Ruby["runFile"](append + "/book/register.rwby")

function askBook(call, values)
    for name, value in pairs(values)
        Ruby["setVar"](name, value)
    end
    return Ruby["runScript"]("return " + call, "register")
end

function verseOf(sign, pick)
    return askBook("verse(sign, pick)", {sign = sign, pick = pick})
end

@@ Whether a lamp is home at a door, and what is said.
function judged(lampSign, doorSign, family)
    local answer = askBook("judge(lamp, door, family)", {lamp = lampSign, door = doorSign, family = family})
    return answer[1], answer[2]
end

function bookPage(sign)
    return askBook("page(sign, family, year)", {sign = sign, family = night["families"][sign], year = night["years"][sign]})
end

function tally(lit)
    return askBook("tally(lit)", {lit = lit})
end
