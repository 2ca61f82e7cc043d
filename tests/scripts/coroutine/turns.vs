@@ direct: no, the direct executor takes a turn after each line of a block instead of each instruction
decay function worker(name, count)
    for i = 1, count
        log = log + name + i + " "
    end
    log = log + name + "done "
end
log = ""
print(worker("w", 2))   @@ expect: not
for k = 1, 10
    spin = k
end
print(log)              @@ expect: w1 w2 wdone 
log = ""
worker("a", 50)
spin = 1
spin = 2
worker("b", 1)
spin = 3
spin = 4
spin = 5
spin = 6
spin = 7
print(log)              @@ expect: a1 b1 bdone 
log = ""
worker("c", 5)
kill()
for k = 1, 20
    spin = k
end
print(log == "")        @@ expect: true
