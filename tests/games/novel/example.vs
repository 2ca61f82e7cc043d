@@ The example of the guide, both ways.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

playSteps([
    "wait 20", tellPage, "return", "return", tellPage, "return", "return", "wait 20", tellPage, "1", "return", tellPage, "return", "return", tellPage, "wait 30", "return", "wait 30", tellPage,
    "down", "return", "return", "return", "return", "wait 20", tellPage, "2", "return", tellPage, "return", "return", tellPage, "wait 30", "return", "wait 30", tellPage
])
