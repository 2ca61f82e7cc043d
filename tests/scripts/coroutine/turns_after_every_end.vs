@@ direct: no, the direct executor takes a turn after each line of a block instead of each instruction
decay function tick()
    while true
        ticks += 1
    end
end
@@ A test of the loop and the line in it, turn by turn: the ticks are half of the turns.
function turns(work)
    ticks = 0
    tick()
    work()
    kill()
    return ticks
end
function two()
    x = 1
    x = 2
end
function ended()
    return 5
end
print(turns(two))                       @@ expect: 2

function breaking()
    while true
        break
    end
    x = ended()
    x = 1
end
print(turns(breaking))                  @@ expect: 3
function guarded()
    if x == nothing
        return 1
    end
    return 2
end
function calling()
    x = guarded()
    x = guarded()
end
print(turns(calling))                   @@ expect: 4

function lost()
    if true
        break
    end
end
function caught()
    x = pcall(lost)
    x = 1
end
print(turns(caught), pcall(lost))       @@ expect: 3\tfalse\tbreak used outside a loop
