i = s = 0
while i < 3000000: s = ((s + (i * 3)) ^ i) & 0xFFFFFFFF; i += 1
print(s)
