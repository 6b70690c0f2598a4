s = "0123456789abcdef"
while len(s) < 262144: s += s
crc = 0xFFFFFFFF
i = 0
while i < 262144:
    crc ^= ord(s[i:i + 1])
    k = 0
    while k < 8:
        if crc & 1: crc = (crc >> 1) ^ 0xEDB88320
        else: crc >>= 1
        k += 1
    i += 1
print(~crc & 0xFFFFFFFF)
