@@ direct: no, there the condition runs outside the body's scope
repeat
    local done = true
until done
print("ended")      @@ expect: ended
