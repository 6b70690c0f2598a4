def add(t, n): t[0] += n
t = [0]
i = 0
while i < 500000: add(t, i); i += 1
print(t[0])
