number = 5
float = 1.5
text = "a\nb"
list = [1, [2, not], {k = true}]
both = list
handle = $1234
loop = {}
loop["self"] = loop
holds = {deep = [handle]}
function twice(x, ...)
    local count = 0
    for extra in ...
        count += extra
    end
    return x * 2 + offset + count
end
offset = 1
lib = {double = twice}
math["randomseed"](9)
state = exportState()
print(typeOf(state))                    @@ expect: userdata
first = random(1000000)
again = exportState()
importState(state)
print(first == random(1000000))         @@ expect: true
number = "changed"
list[1] = 99
fresh = "stays"
twice = not
handle = "kept"
importState(state)
print(number, float, text == "a\nb", list, both, fresh, handle)     @@ expect: 5\t1.500000\ttrue\t[1, [2, not], {k: true}]\t[1, [2, not], {k: true}]\tstays\tkept
list[1] = 7
print(both[1])                          @@ expect: 1
print(twice(4, 10, 20), lib["double"](1))   @@ expect: 39\t3
print(holds["deep"][1] == $1234)        @@ expect: true
loop["self"] = not
holds = not
print(pcall(exportState, 1, 2))         @@ expect: false\texportState([path]) expects zero or one argument
print(pcall(exportState, 1))            @@ expect: false\texportState(path) expects a path string
print(pcall(importState))               @@ expect: false\timportState(rawOrPath) expects exactly one argument
print(pcall(importState, 5))            @@ expect: false\timportState(rawOrPath) expects raw bytes or a path string
importState("no/such.state")            @@ error: Failed to open state file for reading: no/such.state
@@ direct: no, functions of the direct executor have no image
