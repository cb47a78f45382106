-- Wireshark dissector for XPlaneOrvane's two protocols, Tarnel and Velmar.
--
-- Install: copy this file into Wireshark's personal Lua plugins folder (Help, About Wireshark,
-- Folders), usually ~/.local/lib/wireshark/plugins, and press Ctrl+Shift+L. For a single run:
--     tshark -X lua_script:orvane.lua -r capture.pcapng -Y orvane
-- Needs Wireshark 3.6 or newer. The server's port, 48000, is a preference: orvane.port.
--
-- A request does not contain its length, and an answer does not say what it answers. So this
-- follows each connection as the plugin does: what is defined and registered, which requests wait
-- for an answer, and where the plugin would lose its place, close the connection or end the
-- process. docs/tarnel.md and docs/velmar.md describe the protocols.
--
-- Each stretch of a stream is parsed once, in the order of the capture, into a record (sections
-- "Requests" and "Answers"). Wireshark may show a record many times, in any order (section
-- "Showing").

local orvane = Proto("orvane", "XPlaneOrvane")

-- Constants ---------------------------------------------------------------------------------------

local TARNEL, VELMAR = 0x44332211, 0x88776655
local PROTOCOLS = {[TARNEL] = "Tarnel", [VELMAR] = "Velmar"}

local VERSION, DEFINITIONS, DATA = 0xB5006BB1, 0xDDEEFFC0, 0xEFBEADDE
local MESSAGES = {[VERSION] = "VERSION", [DEFINITIONS] = "DEFINITIONS", [DATA] = "DATA"}
local INPUT_SIZE, OUTPUT_SIZE, ITEM_SIZE, NAME_SIZE = 488, 116, 8, 100
local AIRCRAFT = 0xFFFF

local PACKETS = {"register dataref", "unregister dataref", "register command",
                 "unregister command", "read dataref", "write dataref", "run command",
                 "poll command states"}
local VALUE_TYPES = {"int", "float", "byte", "int array", "float array"}
local INT, FLOAT, INT_ARRAY, FLOAT_ARRAY, COMMAND = 1, 2, 3, 4, 6 -- Tarnel's
local ELEMENT_TYPES = {"int", "float", "element of an int array", "element of a float array"}
local TARGET_TYPES = {"int", "float", "element of an int array", "element of a float array",
                      [6] = "command"}
local RANGE_TYPES = {[2] = "float", [4] = "element of a float array"}
local OUTPUT_TYPES = {"int", "float", "int array", "float array", [6] = "command"}
local SCALINGS = {"int range", "float range", "range of two datarefs"}
local CONDITIONS = {"skipped when the value is 1", "skipped when the value is 0",
                    "skipped when the dataref is greater than 0",
                    "skipped when the dataref is 0"}

local BUFFER_SIZE = 0x0FFFFFFF -- of the plugin, each way
-- Wireshark refuses trees of more than a million items.
local MOST_SHOWN = 5000
local MOST_IN_INFO = 3
-- The most unread bytes of the plugin that are followed.
local MOST_UNREAD = 65536

local INT_SHORTAGE = "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4"
local UINT_SHORTAGE = "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4"
local FLOAT_SHORTAGE = "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4"
local BYTE_SHORTAGE = "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1"
local DESCRIPTOR_SHORTAGE = "FATAL@VelmarDataRef::FromStream : Not enough bytes to read dataref"

-- Fields ------------------------------------------------------------------------------------------

local fields = {}

local function field(kind, path, title, ...)
    fields[path] = ProtoField[kind]("orvane." .. path, title, ...)
end

-- A number of which only some values have names; `other` names the rest.
local function named_field(kind, path, title, names, other)
    local ranges = {}
    for value, name in pairs(names) do
        table.insert(ranges, {value, value, name})
    end
    table.insert(ranges, {0, 0xFFFFFFFF, other})
    field(kind, path, title, base.RANGE_STRING + base.DEC, ranges)
end

field("framenum", "request_in", "Request in", base.NONE, frametype.REQUEST)
field("framenum", "response_in", "Response in", base.NONE, frametype.RESPONSE)
field("relative_time", "response_time", "Response time")
field("uint32", "identification", "Identification", base.HEX, PROTOCOLS)
field("uint32", "length", "Length", base.DEC)
field("string", "name", "Name")
field("bytes", "undecoded", "Not decoded")

field("uint32", "tarnel.message", "Message", base.HEX, MESSAGES)
field("string", "tarnel.version", "Version")
field("uint32", "tarnel.version.number", "Number", base.DEC)
field("uint32", "tarnel.input_size", "Size of an input record", base.DEC)
field("uint32", "tarnel.input_count", "Input records", base.DEC)
field("uint32", "tarnel.output_size", "Size of an output record", base.DEC)
field("uint32", "tarnel.output_count", "Output records", base.DEC)
field("uint32", "tarnel.item_size", "Size of an item", base.DEC)
field("uint32", "tarnel.item_count", "Items", base.DEC)
field("none", "tarnel.input", "Input")
-- Each field of an input record: offset, kind, path, title, and the names of its values.
local INPUT_LAYOUT = {
    {0, "int32", "action", "Action"},
    {4, "int32", "reserved", "Reserved"},
    {8, "int32", "reserved", "Reserved"},
    {12, "int32", "index", "Target index"},
    {16, "int32", "fixed_int", "Fixed int value"},
    {20, "int32", "repeat", "Repeat interval, ms"},
    {24, "int32", "int_min", "Int range, minimum"},
    {28, "int32", "int_max", "Int range, maximum"},
    {32, "int32", "type", "Target type", TARGET_TYPES, "none, does nothing"},
    {36, "int32", "scaling", "Scaling", SCALINGS, "value / 65535"},
    {40, "int32", "range_type", "Type of the range datarefs", RANGE_TYPES, "none"},
    {44, "int32", "range_index", "Element of the range datarefs"},
    {48, "int32", "condition", "Condition", CONDITIONS, "never skipped"},
    {52, "float", "fixed_float", "Fixed float value"},
    {56, "float", "float_min", "Float range, minimum"},
    {60, "float", "float_max", "Float range, maximum"},
    {64, "int32", "use_fixed", "Use fixed value"},
    {68, "int32", "hold", "Hold command"},
    {72, "int32", "reserved", "Reserved"},
    {76, "int32", "held", "Command is held"},
    {80, "string", "range_min_name", "Range dataref, minimum"},
    {180, "string", "range_max_name", "Range dataref, maximum"},
    {280, "string", "target", "Target"},
    {380, "string", "condition_name", "Condition dataref"},
    {480, "int32", "condition_type", "Type of the condition dataref", ELEMENT_TYPES, "none"},
    {484, "int32", "condition_index", "Element of the condition dataref"},
}
for _, each in ipairs(INPUT_LAYOUT) do
    local path = "tarnel.input." .. each[3]
    if each[5] then
        named_field(each[2], path, each[4], each[5], each[6])
    elseif not fields[path] then
        field(each[2], path, each[4], each[2] == "int32" and base.DEC or nil)
    end
end
field("none", "tarnel.output", "Output")
field("uint32", "tarnel.output.id", "Identifier", base.DEC)
field("string", "tarnel.output.name", "Name")
named_field("int32", "tarnel.output.type", "Type", OUTPUT_TYPES, "none, has no value")
field("int32", "tarnel.output.first", "First element", base.DEC)
field("int32", "tarnel.output.count", "Elements", base.DEC)
field("none", "tarnel.item", "Item")
field("int32", "tarnel.item.action", "Action", base.DEC)
field("int32", "tarnel.item.value", "Value", base.DEC)
field("none", "tarnel.entry", "Entry")
field("uint32", "tarnel.entry.id", "Identifier", base.DEC)
field("uint32", "tarnel.entry.length", "Length", base.DEC)
field("int32", "tarnel.entry.int", "Int")
field("float", "tarnel.entry.float", "Float")
field("uint8", "tarnel.entry.command", "Command", base.DEC, {[0] = "up", "pressed"})
field("none", "tarnel.aircraft", "Aircraft")
field("uint32", "tarnel.aircraft.id", "Aircraft id", base.HEX)

field("none", "velmar.packet", "Packet")
named_field("uint32", "velmar.type", "Type", PACKETS, "none, skipped")
field("uint32", "velmar.id", "Identifier", base.DEC)
named_field("uint32", "velmar.data_type", "Data type", VALUE_TYPES, "none")
field("uint32", "velmar.array_size", "Array size", base.DEC)
field("uint8", "velmar.name_length", "Name length", base.DEC)
field("string", "velmar.name", "Name")
named_field("uint8", "velmar.action", "Action", {"once", "begin"}, "end")
field("uint32", "velmar.value_length", "Value length", base.DEC)
field("int32", "velmar.int", "Int")
field("float", "velmar.float", "Float")
field("uint8", "velmar.byte", "Byte", base.DEC)
field("bytes", "velmar.value", "Value")
field("none", "velmar.reply", "Reply")
field("int32", "velmar.status", "Status", base.DEC, {"success", "failure"})
field("int32", "velmar.failure", "Failure of", base.DEC, {"a dataref", "a command"})
field("uint32", "velmar.count", "Commands", base.DEC)
field("none", "velmar.command", "Command")
field("uint8", "velmar.state", "State", base.DEC, {[0] = "up", "down", "pressed and released"})

orvane.fields = fields

-- Expert information ------------------------------------------------------------------------------

local experts = {}

local function expert_kind(name, title, group, severity)
    experts[name] = ProtoExpert.new("orvane.expert." .. name, title, group, severity)
end

expert_kind("skipped", "Skipped by the plugin", expert.group.PROTOCOL, expert.severity.NOTE)
expert_kind("no_effect", "Without effect", expert.group.PROTOCOL, expert.severity.NOTE)
expert_kind("failure", "Failure", expert.group.RESPONSE_CODE, expert.severity.NOTE)
expert_kind("early", "Sent before the answer", expert.group.SEQUENCE, expert.severity.NOTE)
expert_kind("unanswered", "Without an answer", expert.group.SEQUENCE, expert.severity.NOTE)
expert_kind("cut", "Cut at the end of a segment", expert.group.REASSEMBLE, expert.severity.NOTE)
expert_kind("capture", "Not all in the capture", expert.group.UNDECODED, expert.severity.NOTE)
expert_kind("mismatch", "Not what was declared", expert.group.MALFORMED, expert.severity.WARN)
expert_kind("lost_place", "The plugin loses its place", expert.group.PROTOCOL,
            expert.severity.WARN)
expert_kind("closes", "The plugin closes the connection", expert.group.PROTOCOL,
            expert.severity.WARN)
expert_kind("ends_process", "Ends the simulator's process", expert.group.PROTOCOL,
            expert.severity.ERROR)

orvane.experts = experts

-- Preference --------------------------------------------------------------------------------------

orvane.prefs.port = Pref.uint("TCP port", 48000, "The port that the plugin listens on")
local port = orvane.prefs.port

-- Bytes and numbers -------------------------------------------------------------------------------

local function u32(tvb, offset)
    return tvb(offset, 4):le_uint()
end

local function i32(tvb, offset)
    return tvb(offset, 4):le_int()
end

-- The product of two uint32 in the plugin's 32-bit arithmetic. A double cannot hold all of it.
local function multiply32(a, b)
    local low, high = b % 65536, math.floor(b / 65536)
    return (a * low + (a * high % 65536) * 65536) % 4294967296
end

local function text_of(tvb, offset, length)
    return length > 0 and tvb(offset, length):string(ENC_UTF_8) or ""
end

-- The text of a Tarnel name field, whose last byte never counts.
local function name_in(tvb, offset)
    local ends = tvb:raw(offset, NAME_SIZE - 1):find("\0", 1, true)
    return text_of(tvb, offset, ends and ends - 1 or NAME_SIZE - 1)
end

local function plural(count, noun)
    return string.format("%d %s%s", count, noun, count == 1 and "" or "s")
end

-- A float with the fewest digits that parse back to the same.
local function float_text(value)
    for digits = 6, 8 do
        local text = string.format("%." .. digits .. "g", value)
        if tonumber(text) and Struct.pack("<f", tonumber(text)) == Struct.pack("<f", value) then
            return text
        end
    end
    return value ~= value and "nan" or string.format("%.9g", value)
end

-- A list of `count` things for the Info column; only the first ones are shown.
local function list_text(count, text_of_one)
    local texts = {}
    for i = 1, math.min(count, MOST_IN_INFO) do
        texts[i] = text_of_one(i)
    end
    local rest = count - #texts
    return table.concat(texts, ", ") .. (rest > 0 and string.format(" and %.0f more", rest) or "")
end

-- Notes -------------------------------------------------------------------------------------------

-- `holder` is a part or a packet of a record; its item in the tree gets the note.
local function note(holder, kind, text)
    holder.notes = holder.notes or {}
    table.insert(holder.notes, {kind = kind, text = text})
end

-- Connections -------------------------------------------------------------------------------------

local tcp_stream = Field.new("tcp.stream")
local tcp_sequence = Field.new("tcp.seq_raw")
local tcp_relative_sequence = Field.new("tcp.seq")
local tcp_length = Field.new("tcp.len")
local tcp_completeness = Field.new("tcp.completeness")

local streams, records

function orvane.init()
    streams, records = {}, {}
end

-- The innermost one, if TCP is carried in TCP.
local function last(extractor)
    local infos = {extractor()}
    return infos[#infos] and infos[#infos].value
end

-- In the first of two passes, tshark may have no values of fields. Parsing then only finds where
-- requests and answers end.
local function is_blind()
    return last(tcp_stream) == nil
end

local function new_stream(pinfo)
    -- Definitions from before the capture are unknown.
    local whole = is_blind() or (last(tcp_completeness) or 0) % 2 == 1
    return {
        whole = whole,
        is_doubtful = not whole, -- whether the definitions may be out of date
        client_end = tostring(pinfo.src) .. " " .. pinfo.src_port,
        waiting = {}, -- requests without an answer, oldest first
        open = nil, -- the last of them, if packets may still be added to it
        partial = nil, -- a request that has arrived in part: {request, part, frame, answer}
        lost = nil, -- the frame in which the plugin lost its place
        unread = nil, -- what it had not read then, and has received since, if known
        definitions = whole and {outputs = {}, actions = {}, commands = 0, length = 12} or nil,
        datarefs = {},
        commands = {},
        client = {skip = 0},
        server = {skip = 0},
    }
end

local function is_request(stream, pinfo)
    if (pinfo.dst_port == port) ~= (pinfo.src_port == port) then
        return pinfo.dst_port == port
    end
    return stream.client_end == tostring(pinfo.src) .. " " .. pinfo.src_port
end

local function is_after(a, b)
    local distance = (a - b) % 4294967296
    return distance > 0 and distance < 2147483648
end

-- Notes the position of a segment in what this side has sent. The dissector may be called several
-- times for a segment, and is not called for a retransmission.
local function follow(cursor)
    local side = cursor.side
    side.is_first, side.has_gap = side.frame ~= cursor.frame, false
    side.frame = cursor.frame
    if not side.is_first or is_blind() then
        return
    end
    local from = last(tcp_sequence)
    local to = (from + last(tcp_length)) % 4294967296
    if not cursor.is_reassembled then
        side.has_gap = side.position and is_after(from, side.position) or
            not side.position and cursor.stream.whole and last(tcp_relative_sequence) ~= 1
    end
    if not side.position or is_after(to, side.position) then
        side.position = to
    end
end

-- A stretch of a stream while it is parsed. `total` is its size, `captured` may be less.
local function new_cursor(stream, side, tvb, pinfo, record)
    return {
        stream = stream,
        side = side,
        tvb = tvb,
        captured = tvb:len(),
        total = tvb:reported_len(),
        frame = pinfo.number,
        time = pinfo.rel_ts,
        can_ask = pinfo.can_desegment > 0,
        is_reassembled = tvb:offset() == 0, -- starts its reassembled data
        record = record,
    }
end

-- Whether the bytes are there. If not, `missing` is how many the stretch lacks, 0 if only the
-- capture lacks them.
local function has(cursor, offset, count)
    local ends = offset + count
    cursor.missing = math.max(ends - cursor.total, 0)
    return ends <= cursor.captured
end

local function add_part(cursor, offset, length, part)
    part.offset = offset
    part.length = math.max(math.min(length, cursor.captured - offset), 0)
    table.insert(cursor.record.parts, part)
    return part
end

-- Shows the rest of the stretch as bytes.
local function add_rest(cursor, offset, label)
    return add_part(cursor, offset, cursor.captured - offset, {info = label, label = label})
end

-- Loss of place -----------------------------------------------------------------------------------

-- What stays unread if the plugin stops at `at`; nil if that is unknown.
local function unread_from(cursor, at)
    local size = cursor.total - at
    if cursor.captured < cursor.total or size > MOST_UNREAD then
        return nil
    end
    return size > 0 and cursor.tvb:raw(at, size) or ""
end

-- From here on the plugin looks for an identification in the unread bytes.
local function lose_place(stream, holder, frame, why, unread)
    note(holder, "lost_place", why .. ": the connection has lost its place")
    if not stream.lost then
        stream.lost, stream.unread = frame, unread
    end
end

-- Tarnel requests ---------------------------------------------------------------------------------

local function read_output(tvb, at)
    local name, kind = name_in(tvb, at + 4), i32(tvb, at + 104)
    local is_own = name:sub(1, 4) == "kyr/"
    return {id = u32(tvb, at), name = name, type = kind, count = i32(tvb, at + 112),
            is_own = is_own, is_command = kind == COMMAND and is_own}
end

local function is_array(output)
    return output.type == INT_ARRAY or output.type == FLOAT_ARRAY
end

-- The size of an output's entry while an aircraft is loaded.
local function entry_length(output)
    if output.is_command then
        return 9
    elseif is_array(output) then
        return 8 + 4 * math.max(output.count, 0)
    end
    return (output.type == INT or output.type == FLOAT) and 12 or 4
end

-- Without an aircraft a command has its identifier twice.
local function extra_length(output, is_unloaded)
    return output.is_command and is_unloaded and 4 or 0
end

-- An entry's name and value as text; nil if it is not the output's entry, or incomplete.
local function entry_text(tvb, at, ends, output, is_unloaded)
    local extra = extra_length(output, is_unloaded)
    if at + entry_length(output) + extra > ends or u32(tvb, at) ~= output.id then
        return nil
    end
    local name = output.name ~= "" and output.name or string.format("output %.0f", output.id)
    if output.is_command then
        return name .. (tvb(at + 8 + extra, 1):uint() == 0 and " = up" or " = pressed")
    elseif output.type == INT then
        return name .. " = " .. i32(tvb, at + 8)
    elseif output.type == FLOAT then
        return name .. " = " .. float_text(tvb(at + 8, 4):le_float())
    elseif is_array(output) then
        return name .. " = " .. plural(math.max(output.count, 0),
                                       output.type == INT_ARRAY and "int" or "float")
    end
    return name .. ": no value"
end

local function read_definitions(tvb, at, input_count, output_count)
    local definitions = {outputs = {}, actions = {}, commands = 0, length = 12}
    for i = 0, input_count - 1 do
        local record = at + INPUT_SIZE * i
        local action = i32(tvb, record)
        definitions.actions[action] = definitions.actions[action] or {}
        table.insert(definitions.actions[action], name_in(tvb, record + 280))
    end
    at = at + INPUT_SIZE * input_count
    for i = 0, output_count - 1 do
        local output = read_output(tvb, at + OUTPUT_SIZE * i)
        table.insert(definitions.outputs, output)
        definitions.commands = definitions.commands + (output.is_command and 1 or 0)
        definitions.length = definitions.length + entry_length(output)
    end
    return definitions
end

-- The plugin's log line when it runs out of records.
local function definitions_shortage(available, input_count)
    local whole_inputs = math.floor(available / INPUT_SIZE)
    local left = available - INPUT_SIZE * whole_inputs
    local in_floats = whole_inputs < input_count and left >= 52 and left < 64
    return in_floats and FLOAT_SHORTAGE or INT_SHORTAGE
end

-- What the plugin does with a message whose declared and real sizes are known, once it takes the
-- message for complete. Returns whether it reads all of it.
local function judge_sizes(cursor, at, request, declared, real)
    if declared < real and cursor.total - at < real then
        return false
    elseif declared == 0 or declared > real then
        lose_place(cursor.stream, request, cursor.frame,
                   string.format("announces %d bytes and has %d", declared, real),
                   unread_from(cursor, declared == 0 and at or at + real))
    end
    return true
end

-- Whether a message can never arrive whole.
local function is_oversized(cursor, at, request, declared)
    if declared + 4 <= BUFFER_SIZE then
        return false
    end
    lose_place(cursor.stream, request, cursor.frame, string.format(
        "announces %.0f bytes, more than the plugin's buffer holds", declared),
        unread_from(cursor, at))
    return true
end

local function is_cut(cursor, at, length)
    has(cursor, at, length)
    return cursor.missing > 0
end

local function note_record_size(request, what, size, expected, count)
    if size ~= expected and count > 0 then
        note(request, "mismatch",
             string.format("%ss are read at %d bytes each, not %d", what, expected, size))
    end
end

local function note_closing_outputs(request, outputs)
    for _, output in ipairs(outputs) do
        if output.is_own and is_array(output) and output.count < 0 then
            note(request, "closes", "a negative number of elements of " .. output.name ..
                 " closes the connection, unless the dataref exists already: " ..
                 "Warning@TcpConnection::ProcessEvents : Feed() : ")
            return
        end
    end
end

-- Each of these returns the message's length, or nil if it is incomplete.
local parse_message = {}

parse_message[VERSION] = function()
    return 4
end

parse_message[DEFINITIONS] = function(cursor, at, request)
    if not has(cursor, at, 20) then
        return nil
    end
    local tvb = cursor.tvb
    local input_size, input_count = u32(tvb, at + 4), u32(tvb, at + 8)
    local output_size, output_count = u32(tvb, at + 12), u32(tvb, at + 16)
    local declared = (multiply32(input_size, input_count) +
                      multiply32(output_size, output_count) + 20) % 4294967296
    local real = 20 + INPUT_SIZE * input_count + OUTPUT_SIZE * output_count
    request.info = string.format("Tarnel DEFINITIONS %s, %s", plural(input_count, "input"),
                                 plural(output_count, "output"))
    if is_oversized(cursor, at, request, declared) then
        return cursor.total - at
    elseif is_cut(cursor, at, declared) then
        return nil
    end
    note_record_size(request, "input record", input_size, INPUT_SIZE, input_count)
    note_record_size(request, "output record", output_size, OUTPUT_SIZE, output_count)
    if not judge_sizes(cursor, at, request, declared, real) then
        note(request, "ends_process", "announces more records than it has: the simulator's " ..
             "process ends with " .. definitions_shortage(cursor.total - at - 20, input_count))
        return cursor.total - at
    end
    request.is_twice = declared == 0
    request.former = cursor.stream.definitions
    request.definitions = has(cursor, at, real) and
        read_definitions(tvb, at + 20, input_count, output_count) or nil
    note_closing_outputs(request, request.definitions and request.definitions.outputs or {})
    return real
end

local function item_text(definitions, action, value)
    local targets = definitions and definitions.actions[action]
    return string.format("%s = %d", targets and targets[1] or "action " .. action, value)
end

local function items_text(cursor, at, count)
    if count == 0 or cursor.captured - at < ITEM_SIZE * math.min(count, MOST_IN_INFO) then
        return plural(count, "item")
    end
    return list_text(count, function(i)
        local item = at + ITEM_SIZE * (i - 1)
        return item_text(cursor.stream.definitions, i32(cursor.tvb, item),
                         i32(cursor.tvb, item + 4))
    end)
end

-- What happens at the first item that the plugin cannot execute.
local function judge_items(cursor, at, request, count)
    local definitions = cursor.stream.definitions
    for i = 0, count - 1 do
        local item = at + 12 + ITEM_SIZE * i
        if cursor.total - item < 4 then
            note(request, "ends_process", "announces more items than it has: the simulator's " ..
                 "process ends with " .. UINT_SHORTAGE)
            return
        elseif cursor.captured - item < 4 then
            return
        elseif definitions and not cursor.stream.is_doubtful and
            not definitions.actions[i32(cursor.tvb, item)] then
            request.stops_at = i
            lose_place(cursor.stream, request, cursor.frame, string.format(
                "stops at an undeclared action: WARNING@TarnelProtocol::tryParseData : " ..
                "unknown action id(%.0f)", u32(cursor.tvb, item)), unread_from(cursor, at))
            return
        elseif cursor.total - item < ITEM_SIZE then
            note(request, "mismatch", "the last value is cut: its missing bytes count as zeros")
        end
    end
end

parse_message[DATA] = function(cursor, at, request)
    if not has(cursor, at, 12) then
        return nil
    end
    local size, count = u32(cursor.tvb, at + 4), u32(cursor.tvb, at + 8)
    local declared = (multiply32(size, count) + 12) % 4294967296
    local real = 12 + ITEM_SIZE * count
    request.info = "Tarnel DATA: " .. items_text(cursor, at + 12, count)
    if is_oversized(cursor, at, request, declared) then
        return cursor.total - at
    elseif is_cut(cursor, at, declared) then
        return nil
    end
    note_record_size(request, "item", size, ITEM_SIZE, count)
    judge_items(cursor, at, request, count)
    local is_whole = judge_sizes(cursor, at, request, declared, real)
    return is_whole and real or cursor.total - at
end

-- `at` is where the message begins, after the identification.
local function parse_tarnel(cursor, at, request)
    request.info = "Tarnel"
    request.definitions = cursor.stream.definitions
    if at == cursor.total then
        request.info = "Tarnel identification alone"
        request.is_bare = true
        return 0
    elseif not has(cursor, at, 4) then
        return nil
    end
    request.is_bare = false
    request.message = u32(cursor.tvb, at)
    local parse = parse_message[request.message]
    if parse then
        request.info = "Tarnel " .. MESSAGES[request.message]
        return parse(cursor, at, request)
    end
    request.info = "Tarnel unknown message"
    lose_place(cursor.stream, request, cursor.frame, "an unknown message",
               unread_from(cursor, at))
    return cursor.total - at
end

-- Velmar requests ---------------------------------------------------------------------------------

local function described(packet)
    return packet.name or
        string.format("%s %.0f", packet.is_command and "command" or "dataref", packet.id)
end

-- The length that the plugin expects of a value, nil if it accepts none.
local function value_length(entry)
    if entry.type == 4 or entry.type == 5 then
        return multiply32(4, entry.size)
    end
    return ({[1] = 4, [2] = 4, [3] = 1})[entry.type]
end

-- A value of that many bytes as text, for one that fits its data type.
local function value_text(tvb, offset, length, entry)
    local kind = entry and entry.type or 0
    if kind == 1 then
        return tostring(i32(tvb, offset))
    elseif kind == 2 then
        return float_text(tvb(offset, 4):le_float())
    elseif kind == 3 then
        return tostring(tvb(offset, 1):uint())
    elseif kind > 3 then
        return plural(length / 4, kind == 4 and "int" or "float")
    end
    return plural(length, "byte")
end

local function entries_of(stream, packet)
    return packet.is_command and stream.commands or stream.datarefs
end

-- Registrations count as successful until the answer says otherwise.
local function apply(stream, packet)
    local map = entries_of(stream, packet)
    if packet.id and packet.type <= 4 then
        packet.former = map[packet.id]
        map[packet.id] = packet.entry
    end
end

local function revert(stream, packet)
    local map = entries_of(stream, packet)
    if packet.id and packet.type <= 4 and map[packet.id] == packet.entry then
        map[packet.id] = packet.former
    end
end

-- Each of these returns the packet's length, or nil if it is incomplete, and fills in what it
-- finds. `at` is the position of the type.
local parse_packet = {}

parse_packet[1] = function(cursor, at, packet)
    if not has(cursor, at, 17) then
        return nil
    end
    local tvb, name_length = cursor.tvb, cursor.tvb(at + 16, 1):uint()
    if not has(cursor, at, 17 + name_length) then
        return nil
    end
    local kind = u32(tvb, at + 8)
    packet.name = text_of(tvb, at + 17, name_length)
    packet.entry = {name = packet.name, type = kind > 5 and 0 or kind, size = u32(tvb, at + 12)}
    packet.info = "register " .. described(packet)
    return 17 + name_length
end

parse_packet[3] = function(cursor, at, packet)
    if not has(cursor, at, 9) then
        return nil
    end
    local name_length = cursor.tvb(at + 8, 1):uint()
    if not has(cursor, at, 9 + name_length) then
        return nil
    end
    packet.name = text_of(cursor.tvb, at + 9, name_length)
    packet.entry = {name = packet.name}
    packet.info = "register " .. described(packet)
    if cursor.total - at < 17 then
        note(packet, "ends_process", string.format(
            "%d bytes follow the type where 13 are needed: the simulator's process ends with %s",
            cursor.total - at - 4, DESCRIPTOR_SHORTAGE))
    end
    return 9 + name_length
end

local function parse_unregister(cursor, at, packet)
    packet.info = "unregister " .. described(packet)
    return has(cursor, at, 8) and 8 or nil
end

parse_packet[2] = parse_unregister
parse_packet[4] = parse_unregister

parse_packet[5] = function(cursor, at, packet)
    packet.entry = entries_of(cursor.stream, packet)[packet.id]
    packet.info = "read " .. described(packet)
    return has(cursor, at, 8) and 8 or nil
end

-- A write whose number was registered before the capture began.
local function parse_unseen_write(cursor, at, packet)
    if not has(cursor, at, 12) then
        return nil
    end
    local length = u32(cursor.tvb, at + 8)
    packet.value_length = length
    note(packet, "capture", "registered before the capture begins")
    return length < BUFFER_SIZE and has(cursor, at, 12 + length) and 12 + length or nil
end

parse_packet[6] = function(cursor, at, packet)
    local entry = entries_of(cursor.stream, packet)[packet.id]
    packet.entry = entry
    packet.info = "write " .. described(packet)
    if not has(cursor, at, 8) then
        return nil
    elseif not entry and not cursor.stream.whole then
        return parse_unseen_write(cursor, at, packet)
    elseif not entry then
        packet.is_silent = true
        note(packet, "lost_place", "an unknown number: the value is taken for the next packets")
        return 8
    elseif not has(cursor, at, 12) then
        return nil
    end
    local length, expected = u32(cursor.tvb, at + 8), value_length(entry)
    if length ~= expected then
        packet.is_silent = true
        lose_place(cursor.stream, packet, cursor.frame, expected and string.format(
            "waits, for a value of %.0f bytes where %.0f are needed", length, expected) or
            "waits, for data type 0 has no value", unread_from(cursor, at))
        packet.info = packet.info .. " (waits)"
        packet.waits = true
        return math.max(cursor.total - at, 12)
    elseif not has(cursor, at, 12 + length) then
        return nil
    end
    packet.value_length = length
    packet.info = packet.info .. " = " .. value_text(cursor.tvb, at + 12, length, entry)
    return 12 + length
end

parse_packet[7] = function(cursor, at, packet)
    if not has(cursor, at, 9) then
        return nil
    end
    packet.entry = entries_of(cursor.stream, packet)[packet.id]
    packet.is_silent = true
    packet.info = (({"run ", "begin "})[cursor.tvb(at + 8, 1):uint()] or "end ") ..
        described(packet)
    if not packet.entry and cursor.stream.whole then
        note(packet, "skipped", "an unknown number: nothing is run")
    end
    return 9
end

parse_packet[8] = function(_, _, packet)
    packet.info = "poll"
    return 4
end

local function parse_unknown_packet(_, _, packet)
    packet.is_silent = true
    packet.info = PROTOCOLS[packet.type] and "identification" or "unknown type"
    note(packet, "skipped", packet.info .. " inside a request: its four bytes are skipped")
    return 4
end

-- The plugin logs the length of a name as one raw character.
local function character(code)
    return code >= 32 and code < 127 and string.char(code) or string.format("\\x%02X", code)
end

-- The plugin's last log line if an incomplete packet ends it.
local function fate_of_part(cursor, at)
    local arrived = cursor.total - at
    local kind = arrived >= 4 and has(cursor, at, 4) and u32(cursor.tvb, at) or 0
    local entry = arrived >= 8 and has(cursor, at, 8) and
        cursor.stream.datarefs[u32(cursor.tvb, at + 4)] or nil
    if (kind == 1 or kind == 3) and arrived >= 17 and has(cursor, at, 17) then
        local owner, head = "XPlaneDataRef", 17
        if kind == 3 then
            owner, head = "VelmarDataRef", 9
        end
        return string.format("FATAL@%s::FromStream : tried to read string with %s bytes, got %d",
                             owner, character(cursor.tvb(at + head - 1, 1):uint()), arrived - head)
    elseif kind == 3 then
        return DESCRIPTOR_SHORTAGE
    elseif kind == 5 or (kind == 6 and arrived < 12) or (kind == 7 and arrived > 4 and arrived < 8)
    then
        return UINT_SHORTAGE
    elseif kind == 7 and arrived == 8 then
        return BYTE_SHORTAGE
    end
    return kind == 6 and entry and
        ({INT_SHORTAGE, FLOAT_SHORTAGE, BYTE_SHORTAGE})[entry.type] or nil
end

local function parse_one_packet(cursor, at)
    if not has(cursor, at, 4) then
        return nil
    end
    local kind = u32(cursor.tvb, at)
    local packet = {type = kind, offset = at, is_command = kind == 3 or kind == 4 or kind == 7}
    if kind >= 1 and kind <= 7 then
        if not has(cursor, at, 8) then
            return nil
        end
        packet.id = u32(cursor.tvb, at + 4)
        packet.name = (entries_of(cursor.stream, packet)[packet.id] or {}).name
    end
    packet.length = (parse_packet[kind] or parse_unknown_packet)(cursor, at, packet)
    return packet.length and packet or nil
end

-- A short command name needs bytes after it; the advice is two words of zeros.
local function take_for_padding(packets, packet)
    local before = packets[#packets]
    local room = before and (before.room or before.type == 3 and before.length < 17 and 2) or 0
    if packet.type == 0 and room > 0 then
        packet.room, packet.info, packet.notes = room - 1, "padding", nil
    end
end

-- Packets from `at` to the end. Returns them, and where the first incomplete one begins, if there
-- is one.
local function parse_velmar(cursor, at)
    local packets = {}
    while at < cursor.total do
        local packet = parse_one_packet(cursor, at)
        if not packet then
            return packets, at
        end
        take_for_padding(packets, packet)
        apply(cursor.stream, packet)
        table.insert(packets, packet)
        at = at + packet.length
    end
    return packets, nil
end

-- Requests ----------------------------------------------------------------------------------------

-- Asks for the rest of what begins at `start`, which is parsed again when the rest has arrived.
local function ask(cursor, start)
    cursor.record.more = cursor.missing
    cursor.record.more_at = start
    return cursor.total
end

-- If Wireshark may not reassemble segments, or the capture lacks bytes, an incomplete request is
-- taken for complete.
local function give_up(cursor, request)
    cursor.side.skip = cursor.missing
    request.is_incomplete = true
    request.definitions = nil
    cursor.stream.is_doubtful = true
    note(request, "capture", "the rest is not in the capture or not reassembled")
end

-- Waits for the rest of a Tarnel message or Velmar packet that begins at `at` and is cut by the end
-- of the segment. `line` is the last log line if the plugin does not wait.
local function postpone(cursor, start, at, request, line)
    local missing = cursor.missing
    local label = request.protocol == VELMAR and "Velmar packet, cut" or "Tarnel request, cut"
    -- Reassembled data may continue in the same segment.
    local part = cursor.is_reassembled and {} or add_rest(cursor, start, label)
    part.is_cut, part.fatal_line, part.cut_request = true, line, request
    cursor.stream.partial = {request = request, frame = cursor.frame, part = part,
                             unread = unread_from(cursor, at), arrived = cursor.total - start,
                             missing = missing}
    request.time = cursor.time
    cursor.missing = missing
    return ask(cursor, start)
end

-- A request, or more packets of one, is complete.
local function commit(cursor, part, request, packets)
    local stream = cursor.stream
    if not request.is_sent then
        local before = stream.waiting[#stream.waiting]
        if before then
            note(part, "early", before.last_frame == cursor.frame and
                 "in one segment with another request: waits in the plugin until more bytes arrive"
                 or "sent before the answer to the request before it")
        end
        request.is_sent = true
        table.insert(stream.waiting, request)
    end
    for _, packet in ipairs(packets) do
        table.insert(request.packets, packet)
    end
    request.time, request.last_frame = cursor.time, cursor.frame
    if request.message == DEFINITIONS then
        stream.definitions = request.definitions
        stream.is_doubtful = not request.definitions
    end
    stream.open = (request.protocol == VELMAR or request.is_bare) and request or nil
end

local function packets_text(packets)
    local texts = {}
    for _, packet in ipairs(packets) do
        if not packet.room then
            table.insert(texts, packet.info)
        end
    end
    return list_text(#texts, function(i) return texts[i] end)
end

local function add_request_part(cursor, start, ends, part)
    local request, lost = part.request, cursor.stream.lost
    add_part(cursor, start, ends - start, part)
    part.notes = request.notes
    request.notes = nil
    if lost and lost < cursor.frame then
        note(part, "lost_place", string.format(
            "lost its place in frame %d: what becomes of this is not certain", lost))
    end
    commit(cursor, part, request, part.packets)
end

-- A packet that the plugin has only in part.
local function leave_packet(cursor, at, request)
    local line = fate_of_part(cursor, at)
    if line then
        note(request, "ends_process",
             "a part has not arrived: the simulator's process ends with " .. line)
    else
        lose_place(cursor.stream, request, cursor.frame, "a part has not arrived",
                   unread_from(cursor, at))
    end
end

-- What belongs to a request, from `at` on; the part to show begins at `start`. Both return where it
-- ends.
local function parse_packets(cursor, start, at, request)
    local packets, cut_at = parse_velmar(cursor, at)
    local waits = cut_at and cursor.missing > 0 and cursor.can_ask
    if cut_at and cursor.is_buffer then
        leave_packet(cursor, cut_at, request)
    elseif cut_at and not waits then
        give_up(cursor, request)
    end
    local ends = waits and cut_at or cursor.total
    if ends > start then
        local info = #packets > 0 and "Velmar: " .. packets_text(packets) or
            cut_at and "Velmar" or "Velmar identification alone"
        add_request_part(cursor, start, ends, {request = request, packets = packets,
                                               message_at = at, info = info})
    end
    if waits then
        local missing, line = cursor.missing, fate_of_part(cursor, cut_at)
        cursor.missing = missing
        return postpone(cursor, cut_at, cut_at, request, line)
    end
    return ends
end

local function parse_tarnel_request(cursor, start, at, request)
    local length = parse_tarnel(cursor, at, request)
    if not length and cursor.is_buffer then
        request.message = nil
        lose_place(cursor.stream, request, cursor.frame, "a part has not arrived",
                   unread_from(cursor, at))
    elseif not length and cursor.missing > 0 and cursor.can_ask then
        return postpone(cursor, start, at, request)
    elseif not length then
        give_up(cursor, request)
    end
    local ends = length and at + length or cursor.total
    add_request_part(cursor, start, ends, {request = request, packets = {}, message_at = at,
                                           info = request.info})
    return ends
end

local function parse_into(cursor, start, at, request)
    local parse = request.protocol == VELMAR and parse_packets or parse_tarnel_request
    return parse(cursor, start, at, request)
end

local function parse_unknown_identification(cursor, at)
    local stream = cursor.stream
    if stream.lost or not stream.whole then
        local part = add_rest(cursor, at, "not decoded")
        if stream.lost then
            note(part, "lost_place", string.format("lost its place in frame %d", stream.lost))
        else
            note(part, "capture", "no identification: the capture begins within a request")
        end
        return cursor.total
    end
    local part = add_part(cursor, at, 4, {info = "unknown identification",
                                          label = "unknown identification"})
    note(part, "skipped", "an unknown identification: dropped without an answer")
    if at + 4 < cursor.total then
        local rest = add_rest(cursor, at + 4, "not decoded")
        lose_place(stream, rest, cursor.frame,
                   "waits for more bytes; the next identification is looked for here",
                   unread_from(cursor, at + 4))
    end
    return cursor.total
end

local function is_continued(cursor, at)
    local open = cursor.stream.open
    return open and (open.last_frame == cursor.frame or not has(cursor, at, 4) or
                     not PROTOCOLS[u32(cursor.tvb, at)])
end

-- One request from `at` on. Returns where it ends.
local function parse_one_request(cursor, at)
    local stream = cursor.stream
    if stream.lost == cursor.frame then
        add_rest(cursor, at, "not decoded")
        return cursor.total
    elseif is_continued(cursor, at) then
        return parse_into(cursor, at, at, stream.open)
    elseif not has(cursor, at, 4) then
        if cursor.missing == 0 or not cursor.can_ask then
            add_rest(cursor, at, "not decoded")
            return cursor.total
        end
        return ask(cursor, at)
    end
    local identification = u32(cursor.tvb, at)
    if not PROTOCOLS[identification] then
        return parse_unknown_identification(cursor, at)
    end
    return parse_into(cursor, at, at + 4,
                      {protocol = identification, packets = {}, frame = cursor.frame})
end

-- The unread bytes of the plugin, as if they had come in one segment.
local function buffer_tvb(unread)
    return ByteArray.new(unread, true):tvb("Not read before by the plugin")
end

local function waiting_text(count)
    return plural(count, "byte") .. (count == 1 and " waits" or " wait")
end

-- The plugin finds an identification at the start of the unread bytes.
local function find_place(cursor, unread, identification)
    local stream, record = cursor.stream, cursor.record
    record.unread, record.unread_tvb = unread, buffer_tvb(unread)
    stream.lost, stream.unread = nil, nil
    local buffer = setmetatable({tvb = record.unread_tvb, captured = #unread, total = #unread,
                                 can_ask = false, is_buffer = true}, {__index = cursor})
    local request = {protocol = identification, packets = {}, frame = cursor.frame}
    local ends = parse_into(buffer, 0, 4, request)
    if ends < #unread and not stream.lost then
        stream.lost, stream.unread = cursor.frame, unread:sub(ends + 1)
        note(record.parts[#record.parts], "lost_place",
             "found in what the plugin had not read: " .. waiting_text(#unread - ends))
    end
end

-- After it has lost its place, the plugin looks at four bytes each time that more arrive. Each
-- segment counts as one arrival.
local function look(cursor, at, why)
    local stream = cursor.stream
    local unread = stream.unread .. cursor.tvb:raw(at, cursor.captured - at)
    local dropped
    if cursor.side.is_first and #unread >= 4 then
        local a, b, c, d = unread:byte(1, 4)
        local identification = a + 256 * (b + 256 * (c + 256 * d))
        if PROTOCOLS[identification] then
            find_place(cursor, unread, identification)
            return
        end
        dropped, unread = string.format("%02X %02X %02X %02X", a, b, c, d), unread:sub(5)
    end
    stream.unread = #unread <= MOST_UNREAD and unread or nil
    local part = add_rest(cursor, at, dropped and "dropped: " .. dropped or waiting_text(#unread))
    note(part, "lost_place", why .. ": " ..
         (dropped and dropped .. " is dropped as an unknown identification, " or "") ..
         waiting_text(#unread))
    if #unread == 0 then
        stream.lost, stream.unread = nil, nil
    end
end

-- The rest of a request whose beginning was answered. If it has several segments, it is unknown
-- which of them came before the answer.
local function parse_torn_rest(cursor, at, torn)
    local why = string.format("torn, frame %d answers the part that had arrived", torn.answer)
    if cursor.stream.unread and torn.missing <= (last(tcp_length) or 0) then
        look(cursor, at + torn.arrived, why)
        return
    end
    cursor.stream.unread = nil
    note(add_rest(cursor, at, "rest of a torn request"), "lost_place",
         why .. ": the plugin looks for an identification in the rest")
end

local function parse_requests(cursor, at)
    local stream, partial = cursor.stream, cursor.stream.partial
    stream.partial = nil
    if partial then
        partial.part.is_completed = true
    end
    if partial and partial.answer then
        parse_torn_rest(cursor, at, partial)
        return
    elseif stream.unread and at < cursor.total then
        look(cursor, at, string.format("lost its place in frame %d", stream.lost))
        return
    end
    while at < cursor.total do
        at = parse_one_request(cursor, at)
    end
end

-- Answers -----------------------------------------------------------------------------------------

-- The request that an answer belongs to, if there is one.
local function take_request(cursor, part)
    local stream, partial = cursor.stream, cursor.stream.partial
    local request = table.remove(stream.waiting, 1)
    if partial and not partial.answer and (not request or request == partial.request) then
        request = partial.request
        partial.answer = cursor.frame
        request.message = nil
        lose_place(stream, part, cursor.frame, string.format(
            "answers a request of which a part had not arrived in frame %d", partial.frame),
            partial.unread)
    end
    if request then
        request.answer_frame = cursor.frame
        stream.open = stream.open ~= request and stream.open or nil
    end
    return request
end

-- Whether an output stream of this length fits these definitions, and if so, whether there is no
-- aircraft.
local function fits(definitions, length)
    if not definitions then
        return false
    elseif length == definitions.length then
        return true, false
    end
    return length == definitions.length + 4 * definitions.commands, true
end

local function has_no_aircraft(cursor, ends)
    return has(cursor, ends - 4, 4) and u32(cursor.tvb, ends - 4) == 0
end

local function outputs_text(cursor, part, at, ends)
    local outputs = part.definitions.outputs
    local texts = {}
    for i = 1, math.min(#outputs, MOST_IN_INFO) do
        texts[i] = entry_text(cursor.tvb, at, math.min(ends, cursor.captured), outputs[i],
                              part.is_unloaded)
        at = at + entry_length(outputs[i]) + extra_length(outputs[i], part.is_unloaded)
    end
    if #texts < math.min(#outputs, MOST_IN_INFO) or #outputs == 0 then
        return plural(#outputs, "output")
    end
    return list_text(#outputs, function(i) return texts[i] end)
end

local function parse_outputs(cursor, part, request, ends, length)
    local stream = cursor.stream
    part.definitions = stream.definitions
    if request then
        part.definitions = request.definitions
    end
    part.copies = request and request.is_twice and 2 or 1
    local is_right, is_unloaded = fits(part.definitions, length / part.copies)
    if not is_right and request and request.message == DEFINITIONS and
        fits(request.former, length) then
        part.definitions = request.former
        stream.definitions = request.former
        is_right, is_unloaded = fits(request.former, length)
        lose_place(stream, part, cursor.frame,
                   "the former outputs: the plugin had only a part of the DEFINITIONS")
    end
    if not is_right and stream.is_doubtful then
        part.definitions = nil
    end
    part.is_unloaded = is_unloaded
    part.info = "Tarnel answer: " ..
        (part.definitions and outputs_text(cursor, part, ends - length, ends) or "outputs") ..
        (is_right and has_no_aircraft(cursor, ends) and ", no aircraft" or "")
    if part.copies == 2 then
        note(part, "mismatch", "the outputs come twice")
    elseif not is_right and part.definitions and not stream.is_doubtful then
        note(part, "mismatch", string.format("%.0f bytes instead of the %.0f that are declared",
                                             length, part.definitions.length))
    end
end

local function is_version(cursor, at, length)
    return length == 12 and has(cursor, at, 12) and u32(cursor.tvb, at) == VERSION
end

local function version_text(tvb, at)
    return string.format("%d.%d.%d.%d", tvb(at + 4, 1):uint(), tvb(at + 5, 1):uint(),
                         tvb(at + 6, 1):uint(), tvb(at + 7, 1):uint())
end

local function parse_tarnel_answer(cursor, part, request, at, length)
    if request and request.message == VERSION and not is_version(cursor, at, length) then
        note(part, "mismatch", "not the answer to VERSION")
    end
    if (not request or request.message == VERSION) and is_version(cursor, at, length) then
        part.version_at = at
        part.info = "Tarnel answer: version " .. version_text(cursor.tvb, at)
    else
        parse_outputs(cursor, part, request, at + length, length)
    end
end

-- The target of a read or a failed registration; a failed one does not count as registered.
local function valid_entry(entry)
    while entry and entry.has_failed do
        entry = entry.former
    end
    return entry
end

local function parse_states(cursor, at, ends, reply)
    local count = ends - at >= 4 and has(cursor, at, 4) and u32(cursor.tvb, at)
    if not count or at + 4 + 5 * count > ends or
        not has(cursor, at, 4 + 5 * count) then
        return nil
    end
    reply.count, reply.length, reply.names = count, 4 + 5 * count, {}
    for i = 0, math.min(count, MOST_SHOWN) - 1 do
        local id = u32(cursor.tvb, at + 4 + 5 * i)
        reply.names[id] = cursor.stream.commands[id] and cursor.stream.commands[id].name
    end
    reply.info = string.format("poll: %s", plural(count, "command"))
    return reply
end

local function parse_read_value(cursor, at, ends, reply)
    local entry = valid_entry(reply.packet.entry)
    if entry and not value_length(entry) then
        return reply
    elseif ends - at < 16 or not has(cursor, at, 16) then
        return nil
    end
    local length = u32(cursor.tvb, at + 12)
    if (entry and length ~= value_length(entry)) or at + 16 + length > ends or
        not has(cursor, at, 16 + length) then
        return nil
    end
    reply.entry, reply.value_length = entry, length
    reply.length = 16 + length
    reply.info = reply.packet.info .. " = " .. value_text(cursor.tvb, at + 16, length, entry)
    return reply
end

local function parse_failure(cursor, at, ends, reply)
    local packet = reply.packet
    if ends - at < 16 or packet.type == 2 or packet.type == 6 then
        return nil
    end
    reply.length = 16
    reply.info = packet.info .. ": failed"
    if packet.type == 1 or packet.type == 3 then
        revert(cursor.stream, packet)
        packet.entry.has_failed, packet.entry.former = true, packet.former
        note(reply, "failure", "the simulator does not have it")
    else
        note(reply, "failure", "an unknown number")
    end
    return reply
end

-- The reply to a packet; nil if this is not one.
local function parse_reply(cursor, at, ends, packet)
    local reply = {packet = packet, offset = at, length = 12, info = packet.info .. ": ok"}
    if packet.type == 8 then
        return parse_states(cursor, at, ends, reply)
    elseif ends - at < 12 or not has(cursor, at, 12) or u32(cursor.tvb, at) ~= packet.type or
        u32(cursor.tvb, at + 4) ~= packet.id then
        return nil
    end
    local status = i32(cursor.tvb, at + 8)
    if status == 2 then
        return parse_failure(cursor, at, ends, reply)
    elseif status ~= 1 then
        return nil
    end
    return packet.type == 5 and parse_read_value(cursor, at, ends, reply) or
        packet.type ~= 5 and reply or nil
end

-- The replies to one request. Returns where they end, and whether all were there.
local function parse_request_replies(cursor, part, request, at, ends)
    for _, packet in ipairs(request.packets) do
        if not packet.is_silent then
            local reply = parse_reply(cursor, at, ends, packet)
            if not reply then
                note(part, request.is_incomplete and "capture" or "mismatch",
                     "no reply to: " .. packet.info)
                return at, false
            end
            table.insert(part.replies, reply)
            at = at + reply.length
        end
    end
    return at, true
end

local function parse_replies(cursor, part, request, at, ends)
    local waiting, is_right = cursor.stream.waiting
    part.replies = {}
    at, is_right = parse_request_replies(cursor, part, request, at, ends)
    while is_right and at < ends and waiting[1] and waiting[1].protocol == VELMAR do
        local other = take_request(cursor, part)
        note(part, "early", string.format("answers the request of frame %d too, as one with this",
                                          other.frame))
        at, is_right = parse_request_replies(cursor, part, other, at, ends)
    end
    part.rest_at = at
    if is_right and at < ends then
        note(part, request.is_incomplete and "capture" or "mismatch",
             plural(ends - at, "byte") .. " more than replies to the request")
    end
    part.info = "Velmar answer: " .. (#part.replies == 0 and "empty" or
        list_text(#part.replies, function(i) return part.replies[i].info end))
end

local function parse_one_answer(cursor, at, length)
    local part = add_part(cursor, at, 4 + length, {is_answer = true, payload = length})
    local request = take_request(cursor, part)
    part.request, part.time = request, cursor.time
    if not request and cursor.stream.whole and not cursor.stream.lost then
        note(part, "mismatch", "no request waits for an answer")
    end
    if request and request.protocol == VELMAR then
        parse_replies(cursor, part, request, at + 4, math.min(at + 4 + length, cursor.captured))
    else
        parse_tarnel_answer(cursor, part, request, at + 4, length)
    end
end

-- Asks for the rest of an answer, and shows what there is: the rest may never come.
local function postpone_answer(cursor, at)
    local missing = cursor.missing
    if not cursor.is_reassembled then
        note(add_rest(cursor, at, "answer, cut"), "cut",
             plural(missing, "byte") .. (missing == 1 and " is" or " are") .. " missing here" ..
             (missing == 4 and ", as many as the plugin loses of an answer that its system took " ..
              "in parts" or ""))
    end
    ask(cursor, at)
end

local function parse_answers(cursor, at)
    while at < cursor.total do
        local length = has(cursor, at, 4) and u32(cursor.tvb, at)
        if length and length > BUFFER_SIZE - 4 then
            local rest, whole = add_rest(cursor, at, "not decoded"), cursor.stream.whole
            note(rest, whole and "mismatch" or "capture", "no length of an answer: " ..
                 (whole and "one before it was perhaps sent in parts, and damaged" or
                  "the capture begins within it"))
            return
        end
        has(cursor, at, length and 4 + length or 4)
        if cursor.missing > 0 and cursor.can_ask then
            postpone_answer(cursor, at)
            return
        elseif not length then
            add_rest(cursor, at, "not decoded")
            return
        end
        cursor.side.skip = cursor.missing
        parse_one_answer(cursor, at, length)
        at = at + 4 + length
    end
end

-- Records -----------------------------------------------------------------------------------------

-- After a gap in the capture, what is known about the connection may be out of date. Only the last
-- request may still wait, unless the gap hides a later one.
local function forget(stream, is_from_client)
    stream.waiting = {not is_from_client and stream.waiting[#stream.waiting] or nil}
    stream.open, stream.partial = nil, nil
    stream.client.skip, stream.server.skip = 0, 0
    stream.whole, stream.is_doubtful, stream.unread = false, true, nil
end

local function parse_record(stream, tvb, pinfo)
    local is_from_client = is_request(stream, pinfo)
    local side = is_from_client and stream.client or stream.server
    local record = {parts = {}, is_blind = is_blind()}
    local cursor = new_cursor(stream, side, tvb, pinfo, record)
    follow(cursor)
    record.is_first = side.is_first
    if side.has_gap then
        forget(stream, is_from_client)
        record.follows_gap = true
    end
    local skipped = math.min(side.skip, cursor.total)
    if skipped > 0 then
        add_part(cursor, 0, skipped, {info = "continuation", label = "continuation"})
        side.skip = side.skip - skipped
    end
    local parse = is_from_client and parse_requests or parse_answers
    parse(cursor, skipped)
    return record
end

local function stream_of(pinfo)
    local key = last(tcp_stream)
    if not key then
        local ends = {tostring(pinfo.src) .. " " .. pinfo.src_port,
                      tostring(pinfo.dst) .. " " .. pinfo.dst_port}
        table.sort(ends)
        key = table.concat(ends, " ")
    end
    streams[key] = streams[key] or new_stream(pinfo)
    return streams[key]
end

-- The same stretch may come again when a frame is shown again. At most one reassembled stretch ends
-- in a frame.
local function record_of(tvb, pinfo)
    local key = string.format("%d %d %d", pinfo.number, tvb:offset(), tvb:reported_len())
    local record = records[key]
    if not record or (record.is_blind and not is_blind()) then
        record = parse_record(stream_of(pinfo), tvb, pinfo)
        records[key] = record
    end
    return record
end

-- Showing -----------------------------------------------------------------------------------------

local function show_notes(item, holder)
    for _, each in ipairs(holder.notes or {}) do
        item:add_proto_expert_info(experts[each.kind], each.text)
    end
end

-- Adds a name, which filters also find as orvane.name.
local function show_name(tree, name_field, range, name)
    tree:add(name_field, range, name)
    if name ~= "" then
        tree:add(fields.name, range, name):set_hidden(true)
    end
end

-- A name that is known from an earlier message.
local function show_known_name(tree, range, name)
    if name and name ~= "" then
        tree:add(fields.name, range, name):set_generated(true)
    end
end

-- Calls `show` for each of `count` things of `size` bytes that are in the capture, up to a limit.
local function show_each(tree, tvb, at, count, size, ends, show)
    local there = math.min(count, math.floor(math.max(ends - at, 0) / size))
    local shown = math.min(there, MOST_SHOWN)
    for i = 0, shown - 1 do
        show(tree, tvb, at + size * i, i)
    end
    if shown < there then
        tree:add(fields.undecoded, tvb(at + size * shown, size * (there - shown)))
    end
end

local function show_input(tree, tvb, at)
    local item = tree:add(fields["tarnel.input"], tvb(at, INPUT_SIZE))
    item:set_text(string.format("Input: action %d, %s", i32(tvb, at), name_in(tvb, at + 280)))
    for _, each in ipairs(INPUT_LAYOUT) do
        local offset, shown = at + each[1], fields["tarnel.input." .. each[3]]
        if each[2] == "string" then
            show_name(item, shown, tvb(offset, NAME_SIZE), name_in(tvb, offset))
        else
            item:add_le(shown, tvb(offset, 4))
        end
    end
    if not TARGET_TYPES[i32(tvb, at + 32)] then
        item:add_proto_expert_info(experts.no_effect, "a target of this type does nothing")
    end
end

local function show_output(tree, tvb, at)
    local output = read_output(tvb, at)
    local item = tree:add(fields["tarnel.output"], tvb(at, OUTPUT_SIZE))
    item:set_text(string.format("Output: %.0f, %s", output.id, output.name))
    item:add_le(fields["tarnel.output.id"], tvb(at, 4))
    show_name(item, fields["tarnel.output.name"], tvb(at + 4, NAME_SIZE), output.name)
    item:add_le(fields["tarnel.output.type"], tvb(at + 104, 4))
    item:add_le(fields["tarnel.output.first"], tvb(at + 108, 4))
    item:add_le(fields["tarnel.output.count"], tvb(at + 112, 4))
    if output.type == COMMAND and not output.is_own then
        item:add_proto_expert_info(experts.no_effect,
                                   "only commands under kyr/ can be observed: it has no value")
    elseif not OUTPUT_TYPES[output.type] then
        item:add_proto_expert_info(experts.no_effect, "an output of this type has no value")
    end
end

local show_message = {}

show_message[DEFINITIONS] = function(tree, tvb, at, ends)
    for i, name in ipairs({"input_size", "input_count", "output_size", "output_count"}) do
        tree:add_le(fields["tarnel." .. name], tvb(at + 4 * i, 4))
    end
    local input_count, output_count = u32(tvb, at + 8), u32(tvb, at + 16)
    show_each(tree, tvb, at + 20, input_count, INPUT_SIZE, ends, show_input)
    show_each(tree, tvb, at + 20 + INPUT_SIZE * input_count, output_count, OUTPUT_SIZE, ends,
              show_output)
end

show_message[DATA] = function(tree, tvb, at, ends, request)
    tree:add_le(fields["tarnel.item_size"], tvb(at + 4, 4))
    tree:add_le(fields["tarnel.item_count"], tvb(at + 8, 4))
    local actions = request.definitions and request.definitions.actions or {}
    show_each(tree, tvb, at + 12, u32(tvb, at + 8), ITEM_SIZE, ends, function(_, _, item_at, i)
        local action, value = i32(tvb, item_at), i32(tvb, item_at + 4)
        local targets = actions[action] or {}
        local item = tree:add(fields["tarnel.item"], tvb(item_at, ITEM_SIZE))
        item:set_text(string.format("Item: action %d = %d, %s", action, value,
                                    targets[1] or "target not known"))
        item:add_le(fields["tarnel.item.action"], tvb(item_at, 4))
        item:add_le(fields["tarnel.item.value"], tvb(item_at + 4, 4))
        for _, name in ipairs(targets) do
            show_known_name(item, tvb(item_at, 4), name)
        end
        if request.stops_at and i >= request.stops_at then
            item:add_proto_expert_info(experts.skipped, "not executed")
        end
    end)
end

local function show_tarnel(tree, tvb, part)
    local at, ends = part.message_at, part.offset + part.length
    if ends - at < 4 then
        return
    end
    tree:add_le(fields["tarnel.message"], tvb(at, 4))
    local show = show_message[u32(tvb, at)]
    local header = u32(tvb, at) == DEFINITIONS and 20 or 12
    if show and ends - at >= header then
        show(tree, tvb, at, ends, part.request)
    elseif ends - at > 4 then
        tree:add(fields.undecoded, tvb(at + 4, ends - at - 4))
    end
end

-- A Velmar value of a known length.
local function show_value(tree, tvb, at, length, entry)
    local kind = entry and entry.type or 0
    tree:add_le(fields["velmar.value_length"], tvb(at, 4))
    if length == 0 then
        return
    elseif kind == 0 then
        tree:add(fields["velmar.value"], tvb(at + 4, length))
        return
    end
    local size = kind == 3 and 1 or 4
    local shown = ({[3] = fields["velmar.byte"], [2] = fields["velmar.float"],
                    [5] = fields["velmar.float"]})[kind] or fields["velmar.int"]
    show_each(tree, tvb, at + 4, length / size, size, at + 4 + length, function(_, _, value_at)
        tree:add_le(shown, tvb(value_at, size))
    end)
end

local function show_registration(tree, tvb, packet)
    local at = packet.offset
    local head = packet.is_command and 9 or 17
    if not packet.is_command then
        tree:add_le(fields["velmar.data_type"], tvb(at + 8, 4))
        tree:add_le(fields["velmar.array_size"], tvb(at + 12, 4))
    end
    tree:add(fields["velmar.name_length"], tvb(at + head - 1, 1))
    if packet.length > head then
        show_name(tree, fields["velmar.name"], tvb(at + head, packet.length - head),
                  packet.entry.name)
    end
end

local function show_packet(tree, tvb, packet)
    local at = packet.offset
    local item = tree:add(fields["velmar.packet"],
                          tvb(at, math.min(packet.length, tvb:len() - at)))
    item:set_text("Packet: " .. packet.info)
    item:add_le(fields["velmar.type"], tvb(at, 4))
    if packet.id then
        item:add_le(fields["velmar.id"], tvb(at + 4, 4))
    end
    if packet.type == 1 or packet.type == 3 then
        show_registration(item, tvb, packet)
    else
        show_known_name(item, tvb(at, 4), packet.name)
    end
    if packet.type == 7 then
        item:add(fields["velmar.action"], tvb(at + 8, 1))
    elseif packet.value_length then
        show_value(item, tvb, at + 8, packet.value_length, packet.entry)
    elseif packet.waits then
        item:add_le(fields["velmar.value_length"], tvb(at + 8, 4))
    end
    show_notes(item, packet)
end

local function show_velmar(tree, tvb, part)
    for i = 1, math.min(#part.packets, MOST_SHOWN) do
        show_packet(tree, tvb, part.packets[i])
    end
    local last_packet = part.packets[MOST_SHOWN + 1]
    if last_packet then
        tree:add(fields.undecoded, tvb(last_packet.offset,
                                       part.offset + part.length - last_packet.offset))
    end
end

local function show_request(tree, tvb, part)
    if part.message_at > part.offset then
        tree:add_le(fields.identification, tvb(part.offset, 4))
    end
    if part.request.protocol == VELMAR then
        show_velmar(tree, tvb, part)
    else
        show_tarnel(tree, tvb, part)
    end
    if part.request.answer_frame then
        tree:add(fields.response_in, part.request.answer_frame):set_generated(true)
    end
end

local function show_array(tree, tvb, at, ends, output)
    local shown = fields[output.type == INT_ARRAY and "tarnel.entry.int" or "tarnel.entry.float"]
    show_each(tree, tvb, at, math.max(output.count, 0), 4, ends, function(_, _, value_at)
        tree:add_le(shown, tvb(value_at, 4))
    end)
end

-- An output's entry. Returns where it ends, or nil if it is missing.
local function show_entry(tree, tvb, at, ends, output, is_unloaded)
    local text = entry_text(tvb, at, ends, output, is_unloaded)
    if not text then
        return nil
    end
    local extra = extra_length(output, is_unloaded)
    local length = entry_length(output) + extra
    local item = tree:add(fields["tarnel.entry"], tvb(at, length))
    item:set_text(string.format("Entry: %.0f, %s", output.id, text))
    item:add_le(fields["tarnel.entry.id"], tvb(at, 4))
    if extra > 0 then
        item:add_le(fields["tarnel.entry.id"], tvb(at + 4, 4))
    end
    show_known_name(item, tvb(at, 4), output.name)
    if length > 4 then
        item:add_le(fields["tarnel.entry.length"], tvb(at + 4 + extra, 4))
    end
    if output.is_command then
        item:add(fields["tarnel.entry.command"], tvb(at + 8 + extra, 1))
    elseif is_array(output) then
        show_array(item, tvb, at + 8, at + length, output)
    elseif length > 4 then
        item:add_le(fields[output.type == INT and "tarnel.entry.int" or "tarnel.entry.float"],
                    tvb(at + 8, 4))
    end
    return at + length
end

local function show_aircraft(tree, tvb, at)
    local item = tree:add(fields["tarnel.aircraft"], tvb(at, 12))
    local id = u32(tvb, at + 8)
    item:set_text(id == 0 and "Aircraft: none" or string.format("Aircraft: 0x%08X", id))
    item:add_le(fields["tarnel.aircraft.id"], tvb(at + 8, 4))
end

local function is_aircraft(tvb, at, ends)
    return ends - at == 12 and u32(tvb, at) == AIRCRAFT and u32(tvb, at + 4) == 4
end

local function show_outputs(tree, tvb, part, at, ends)
    local outputs = part.definitions and part.definitions.outputs or {}
    for i = 1, math.min(#outputs, MOST_SHOWN) do
        local entry_ends = show_entry(tree, tvb, at, ends, outputs[i], part.is_unloaded)
        if not entry_ends then
            break
        end
        at = entry_ends
    end
    local trailer_at = math.max(at, ends - 12)
    if trailer_at > at then
        tree:add(fields.undecoded, tvb(at, trailer_at - at))
    end
    if is_aircraft(tvb, trailer_at, ends) then
        show_aircraft(tree, tvb, trailer_at)
    elseif trailer_at < ends then
        tree:add(fields.undecoded, tvb(trailer_at, ends - trailer_at))
    end
end

local function show_version(tree, tvb, at)
    tree:add_le(fields["tarnel.message"], tvb(at, 4))
    tree:add(fields["tarnel.version"], tvb(at + 4, 4), version_text(tvb, at))
    tree:add_le(fields["tarnel.version.number"], tvb(at + 8, 4))
end

local function show_states(tree, tvb, reply)
    tree:add_le(fields["velmar.count"], tvb(reply.offset, 4))
    show_each(tree, tvb, reply.offset + 4, reply.count, 5, reply.offset + reply.length,
              function(_, _, at)
        local item = tree:add(fields["velmar.command"], tvb(at, 5))
        local name = reply.names[u32(tvb, at)]
        item:set_text(string.format("Command: %s", name or string.format("%.0f", u32(tvb, at))))
        item:add_le(fields["velmar.id"], tvb(at, 4))
        item:add(fields["velmar.state"], tvb(at + 4, 1))
        show_known_name(item, tvb(at, 4), name)
    end)
end

local function show_reply(tree, tvb, reply)
    local at, packet = reply.offset, reply.packet
    local item = tree:add(fields["velmar.reply"], tvb(at, reply.length))
    item:set_text("Reply: " .. reply.info)
    if packet.type == 8 then
        show_states(item, tvb, reply)
        return
    end
    item:add_le(fields["velmar.type"], tvb(at, 4))
    item:add_le(fields["velmar.id"], tvb(at + 4, 4))
    show_known_name(item, tvb(at, 4), packet.name)
    item:add_le(fields["velmar.status"], tvb(at + 8, 4))
    if reply.value_length then
        show_value(item, tvb, at + 12, reply.value_length, reply.entry)
    elseif reply.length == 16 then
        item:add_le(fields["velmar.failure"], tvb(at + 12, 4))
    end
    show_notes(item, reply)
end

local function show_links(tree, part)
    if part.request then
        tree:add(fields.request_in, part.request.last_frame or part.request.frame)
            :set_generated(true)
        local seconds = part.request.time and part.time - part.request.time or -1
        if seconds >= 0 then
            local whole = math.floor(seconds)
            tree:add(fields.response_time,
                     NSTime.new(whole, math.floor((seconds - whole) * 1e9 + 0.5)))
                :set_generated(true)
        end
    end
end

local function show_answer(tree, tvb, part)
    local at, ends = part.offset + 4, part.offset + part.length
    tree:add_le(fields.length, tvb(part.offset, 4))
    if part.version_at then
        show_version(tree, tvb, part.version_at)
    elseif part.replies then
        for i = 1, math.min(#part.replies, MOST_SHOWN) do
            show_reply(tree, tvb, part.replies[i])
        end
        if part.rest_at < ends then
            tree:add(fields.undecoded, tvb(part.rest_at, ends - part.rest_at))
        end
    else
        local size = (ends - at) / part.copies
        for i = 1, part.copies do
            show_outputs(tree, tvb, part, at + (i - 1) * size, at + i * size)
        end
    end
    show_links(tree, part)
end

-- Known only in a second pass.
local function has_connection_ended()
    return (last(tcp_completeness) or 0) >= 16 -- a FIN, or a RST
end

local function show_cut_request(item, part, pinfo)
    local line = part.fatal_line
    if part.is_completed then
        if line and pinfo.visited and not part.cut_request.answer_frame and has_connection_ended()
        then
            item:add_proto_expert_info(experts.ends_process,
                                       "has no answer: if the plugin looked before the rest " ..
                                       "arrived, the simulator's process ended with " .. line)
        end
    elseif line and pinfo.visited then
        item:add_proto_expert_info(experts.ends_process,
                                   "the rest never arrives: the simulator's process ends with " ..
                                   line)
    elseif line then
        item:add_proto_expert_info(experts.cut, "unless the rest arrives within the frame, the " ..
                                   "simulator's process ends with " .. line)
    else
        item:add_proto_expert_info(experts.cut, "the plugin does not wait for the rest: it " ..
                                   "answers what has arrived")
    end
end

local function show_missing_answer(item, request, pinfo)
    if pinfo.visited and not request.answer_frame and request.last_frame == pinfo.number and
        has_connection_ended() then
        item:add_proto_expert_info(experts.unanswered, "the connection ended before an answer")
    end
end

local function show_part(tree, tvb, part, pinfo)
    local item = tree:add(orvane, tvb(part.offset, part.length))
    item:append_text(", " .. part.info)
    if part.label then
        item:add(fields.undecoded, tvb(part.offset, part.length))
    elseif part.is_answer then
        show_answer(item, tvb, part)
    else
        show_request(item, tvb, part)
        show_missing_answer(item, part.request, pinfo)
    end
    if part.is_cut then
        show_cut_request(item, part, pinfo)
    end
    show_notes(item, part)
    return item
end

local function show(record, tvb, pinfo, tree)
    local texts = {}
    if record.unread then
        -- Data from an earlier display of the frame is gone.
        tvb = record.unread_tvb or buffer_tvb(record.unread)
        record.unread_tvb = nil
    end
    for _, part in ipairs(record.parts) do
        if part.length > 0 then
            local item = show_part(tree, tvb, part, pinfo)
            if record.follows_gap then
                item:add_proto_expert_info(experts.capture,
                                           "bytes before this segment are not in the capture")
            end
        end
        table.insert(texts, part.info)
    end
    if #texts == 0 then
        return
    end
    pinfo.cols.protocol = "Orvane"
    if record.is_first then
        pinfo.cols.info = table.concat(texts, "; ")
    else
        pinfo.cols.info:append("; " .. table.concat(texts, "; "))
    end
end

function orvane.dissector(tvb, pinfo, tree)
    if tvb:len() == 0 then
        return 0
    end
    local record = record_of(tvb, pinfo)
    show(record, tvb, pinfo, tree)
    if record.more then
        pinfo.desegment_offset = record.more_at
        pinfo.desegment_len = record.more
    end
    return tvb:len()
end

-- Registration ------------------------------------------------------------------------------------

DissectorTable.get("tcp.port"):add(port, orvane)

function orvane.prefs_changed()
    local ports = DissectorTable.get("tcp.port")
    ports:remove(port, orvane)
    port = orvane.prefs.port
    ports:add(port, orvane)
end
