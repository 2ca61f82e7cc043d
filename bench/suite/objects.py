class Account:
    def __init__(self, owner, balance):
        self.owner = owner
        self.balance = balance
        self.transfers = 0

    def deposit(self, amount):
        self.balance += amount
        self.transfers += 1

    def withdraw(self, amount):
        if self.balance < amount:
            return False
        self.balance -= amount
        self.transfers += 1
        return True


def trade(rounds):
    accounts = []
    for i in range(1, 101):
        accounts.append(Account("owner" + str(i), 1000))
    refused = 0
    for i in range(1, rounds + 1):
        source = accounts[i * 7 % 100]
        target = accounts[i * 13 % 100]
        if source.withdraw(i % 50):
            target.deposit(i % 50)
        else:
            refused += 1
    total = 0
    for i, account in enumerate(accounts, 1):
        total += account.balance * i + account.transfers
    return str(total) + " " + str(refused)


made = 0
for i in range(1, 50001):
    fresh = Account("x", i)
    made += fresh.balance % 3
print(trade(300000), made, sep="\t")
