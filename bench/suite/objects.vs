function makeAccount(owner, balance)
    return {owner = owner, balance = balance, transfers = 0, deposit = deposit, withdraw = withdraw}
end
function deposit(self, amount)
    self["balance"] += amount
    self["transfers"] += 1
end
function withdraw(self, amount)
    if self["balance"] < amount
        return false
    end
    self["balance"] -= amount
    self["transfers"] += 1
    return true
end
function trade(rounds)
    local accounts = []
    for i = 1, 100
        push(accounts, makeAccount("owner" + i, 1000))
    end
    local refused = 0
    for i = 1, rounds
        local from = accounts[i * 7 % 100 + 1]
        local to = accounts[i * 13 % 100 + 1]
        if from["withdraw"](from, i % 50)
            to["deposit"](to, i % 50)
        else
            refused += 1
        end
    end
    local total = 0
    for i, account in ipairs(accounts)
        total += account["balance"] * i + account["transfers"]
    end
    return total + " " + refused
end
made = 0
for i = 1, 50000
    local fresh = makeAccount("x", i)
    made += fresh["balance"] % 3
end
print(trade(300000), made)
