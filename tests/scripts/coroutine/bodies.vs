@@ direct: no, the direct executor takes a turn after each line of a block instead of each instruction
function run(turns)
    for turn = 1, turns
        at = turn
    end
end
function add(word)
    log = log + word + " "
end

@@ Every kind of statement, a line at a time.
decay function everything(first, ...)
    local count = 0
    if first == "no"
        add("wrong")
    elseif first == "yes"
        add("elseif")
    else
        add("wrong")
    end
    repeat
        count += 1
        add("r" + count)
    until count == 2
    nest
        add("nest")
    end
    function inner(a)
        return a + 1
    end
    add(inner(1))
    local function hidden(a)
        return a * 2
    end
    add(hidden(4))
    for k, v in pairs({b = 2, a = 1})
        add(k + v)
    end
    for i, v in ipairs(["x", "y"])
        if v == "y"
            break
        end
        add(v)
    end
    for v in ["m", "n"]
        add(v)
    end
    for i = 3, 1, -1
        add(i)
    end
    for v in ...
        add("+" + v)
    end
    return last()
end
function last()
    add("last")
end
log = ""
everything("yes", 1, 2, 3)
run(120)
print(log)                              @@ expect: elseif r1 r2 nest 2 8 a1 b2 x m n 3 2 1 +1 +2 +3 last 

@@ Entering `repeat` costs no turn: its first line runs in the turn that gets there.
decay function loops()
    repeat
        log = log + "r"
    until #log > 2
    log = log + "."
end
log = ""
loops()
turn = 1
turn = 2
print(log)                              @@ expect: rr
turn = 3
turn = 4
turn = 5
turn = 6
print(log)                              @@ expect: rrr.

@@ A coroutine that starts another one ends there.
decay function second()
    add("second")
end
decay function chain()
    add("chain")
    second()
    add("never")
end
log = ""
chain()
run(20)
print(log)                              @@ expect: chain second 
@@ One that kills itself goes no further.
decay function quitter()
    add("once")
    kill()
    add("never")
end
log = ""
quitter()
run(20)
print(log)                              @@ expect: once 
@@ Its locals and loop variables are its own.
decay function private(v)
    local own = v
    for i = 1, 3
        own += i
    end
    seen = own
end
own = "main"
for i = 1, 40
    if i == 1
        private(10)
    end
end
print(own, i, seen)                     @@ expect: main\tnot\t16
decay function loose()
    break
end
loose()
turn = 1
turn = 2                                @@ error: break used outside a loop
