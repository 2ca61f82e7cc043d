@@ What the player has chosen in this telling.

memory = {}

function forget()
    memory = {}
end

function remembers(name)
    return memory[name] == true
end
