i = s = 0
while i < 2000:
    j = 0
    while j < 1500: s += j & 7; j += 1
    i += 1
print(s)
