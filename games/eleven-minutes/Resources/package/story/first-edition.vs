@@ What the first edition's pages were, by their numbers: saves of those days hold nothing else.

Novel["firstEdition"]([
    "lighthouse.7c155e5287", "lighthouse.5c2bff4c51", "lighthouse.5d5060e080", "lighthouse.f33c79207e",
    "lighthouse.7c2d2ffc1d", "lighthouse.8a34a9c12d", "lighthouse.261ade167c", "lighthouse.be88754294",
    "lighthouse.e218055575", "lighthouse.8756748a55", "lighthouse.609917b015", "lighthouse.11ab86d849",
    "lighthouse.4b9fdfbf3a", "lighthouse.0f9e53244c", "lighthouse.d2beacfb98", "lighthouse.fe7d977a5b",
    "lighthouse.181402d81f", "lighthouse.a7d8349750", "lighthouse.527a5a2f81", "lighthouse.9c90210c2c",
    "library.81b014d761", "library.7194e11b87", "library.4da8feb216", "library.609917b015",
    "library.0800fe9881", "library.599d78f610", "library.42ed753b7c", "library.0600f787ae",
    "library.aa750910a", "library.0421b997a2", "library.eaa6545b75", "library.26f1e59742", "library.3b38b265db",
    "library.5316945e48", "library.73ec458fa7", "library.ad43dde41d", "library.162d5f6845",
    "library.7dcfa931cd", "library.778e10155b", "library.057fc5dc46", "grove.1ea1acb39e", "grove.e5a6e84d2e",
    "grove.750600421a", "grove.44aff93a26", "grove.1418bf0a56", "grove.db43126757", "grove.3b51f3791e",
    "grove.be25c75976", "grove.7536041d16", "grove.410c4ddebf", "grove.addc27b6af", "grove.fa34607950",
    "grove.30d06c5422", "grove.110231ddaa", "grove.2bd6f7932a", "grove.0d2231bd24", "grove.5689165a13",
    "grove.615a513325", "grove.d3b8c8544b", "grove.d3911eff4c", "grove.5f8415b567", "grove.6558403d68",
    "grove.23ecedce58", "grove.96dc7a9d40", "grove.bc96036280", "night.4ca454ea81", "night.76e5312798",
    "night.f2acde2a68", "night.7300534775", "night.78832c6f35", "night.62e48c206c", "night.097cd8eab1",
    "night.3d97fb466f", "night.c2e46220d6", "night.4793e67a5e", "night.4793e67a5e", "night.4793e67a5e",
    "night.76bfa9f416", "night.dc339b792b", "night.d136f11c63", "night.2a812b602d", "night.5e5dad6d4d",
    "steady.23b7c619b7", "steady.5293dbf877", "steady.37c4bcfa22", "steady.23bb2cf473", "steady.2c685fc44b",
    "steady.65f10cea32", "steady.aa0391eb63", "crossing.b88612a88b", "crossing.95305c3d72",
    "crossing.a43f0a7dd", "crossing.70bbf726b0", "crossing.652639e262", "crossing.6ec9fce555",
    "crossing.34926fb925", "crossing.7c56951b2f", "crossing.c63da2f34b", "crossing.8a401f5176",
    "crossing.71bea9a574", "crossing.2543a8d944"
])
