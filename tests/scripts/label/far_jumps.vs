@@ direct: no, labels belong to compiled programs
@@ A jump into a program that has ended runs its rest and then ends what jumped, whatever block it came out of.
log = ""
ended = load("nest \"far\"\n    log = log + \"far \"\nend\nlog = log + \"rest \"\n")
ended()
function outOfIf()
    if true
        jumpTo("far")
    end
    log = log + "never "
end
function outOfLoop()
    for i = 1, 3
        jumpTo("far")
    end
    log = log + "never "
end
function outOfRepeat()
    repeat
        while true
            jumpTo("far")
        end
    until false
    log = log + "never "
end
log = ""
for i, jump in ipairs([outOfIf, outOfLoop, outOfRepeat])
    jump()
    log = log + "| "
end
print(log)                              @@ expect: far rest | far rest | far rest | 

@@ The labels of a function go with it.
function scene()
    nest "inside"
        log = log + "inside "
    end
end
scene = not
print(pcall(load("jumpTo(\"inside\")")))     @@ expect: false\tjumpTo target not found: inside
log = ""
for i = 1, 3
    jumpTo("far")
end
print("never")
