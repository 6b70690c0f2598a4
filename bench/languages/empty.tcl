set a 0
