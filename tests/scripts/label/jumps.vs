@@ direct: no, labels belong to compiled programs
count = 0
nest "again"
    count += 1
end
if count < 3
    jumpTo("again")
end
print(count)            @@ expect: 3
for i = 1, 5
    for j = 1, 5
        if i == 2 and j == 2
            jumpTo("out")
        end
        where = i + ":" + j
    end
end
print("skipped")
nest "out"
    print(where, i, j)  @@ expect: 2:1\tnot\tnot
end
nest
    print("plain")      @@ expect: plain
end
function leave()
    jumpTo("end")
    print("never")
end
leave()
print("never")
nest "end"
    print("at end")     @@ expect: at end
end
print(pcall(jumpTo, ""))    @@ expect: false\tjumpTo(label) expects a non-empty label
jumpTo("nowhere")       @@ error: jumpTo target not found: nowhere
