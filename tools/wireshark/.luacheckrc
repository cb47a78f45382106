-- What Wireshark offers to its dissectors.
std = "lua52"
max_line_length = 100
globals = {"ByteArray", "Proto", "ProtoField", "ProtoExpert", "Pref", "Field", "DissectorTable",
           "NSTime", "Struct", "base", "frametype", "expert", "ENC_UTF_8"}
