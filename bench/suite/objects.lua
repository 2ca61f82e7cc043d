local function deposit(self, amount)
    self.balance = self.balance + amount
    self.transfers = self.transfers + 1
end
local function withdraw(self, amount)
    if self.balance < amount then
        return false
    end
    self.balance = self.balance - amount
    self.transfers = self.transfers + 1
    return true
end
local function makeAccount(owner, balance)
    return {owner = owner, balance = balance, transfers = 0, deposit = deposit, withdraw = withdraw}
end
local function trade(rounds)
    local accounts = {}
    for i = 1, 100 do
        accounts[i] = makeAccount("owner" .. i, 1000)
    end
    local refused = 0
    for i = 1, rounds do
        local from = accounts[i * 7 % 100 + 1]
        local to = accounts[i * 13 % 100 + 1]
        if from:withdraw(i % 50) then
            to:deposit(i % 50)
        else
            refused = refused + 1
        end
    end
    local total = 0
    for i, account in ipairs(accounts) do
        total = total + account.balance * i + account.transfers
    end
    return total .. " " .. refused
end
local made = 0
for i = 1, 50000 do
    local fresh = makeAccount("x", i)
    made = made + fresh.balance % 3
end
print(trade(300000), made)
