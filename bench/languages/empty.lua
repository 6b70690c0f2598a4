local a = 0
