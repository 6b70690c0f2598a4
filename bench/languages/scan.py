s = "a line of text that is not too long\n"
while len(s) < 4194304: s += s
i = n = 0
size = len(s)
while i < size:
    if s[i:i + 1] == "\n": n += 1
    i += 1
print(n)
