-- Run by ardour7-lua: builds a session around the plug-in with one parameter
-- automated, plays it in real time while a track records (renders) its
-- output, and saves it.
--
-- ardour7-lua automated-session.lua SESSION_DIR TYPE PLUGIN PARAMETER FROM TO
--   TYPE       LXVST, VST3 or LV2 (Ardour's plug-in type names)
--   PARAMETER  the automated parameter; FROM and TO are fractions of its range
--
-- Timeline: noise from 0 to 0.5 s, exact silence after it (so what follows
-- is the reverb's tail); the parameter ramps from FROM to TO between 0 and
-- 1 s and then holds. About 1.7 s are played and recorded, as two mono files
-- "Take1_Render-1%L.wav" and "%R.wav" under SESSION_DIR/interchange; the
-- session is saved as SESSION_DIR/daw-test.ardour.
--
-- Ardour's export is not used: run headless, Ardour 7.3's export corrupts
-- the heap in about one run in three, with or without our plug-in.

local dir, typeName, pluginName, parameterName = arg[1], arg[2], arg[3], arg[4]
local from, to = tonumber(arg[5]), tonumber(arg[6])
assert(dir and typeName and pluginName and parameterName and from and to, "usage: see the top of this script")

local pluginType = ARDOUR.PluginType[typeName]
assert(pluginType, "unknown plug-in type " .. typeName)

-- Ardour reads its MIDI name documents on a thread of its own from start-up,
-- and XML work on other threads meanwhile can corrupt the heap: nothing
-- starts before that thread has finished.
local function midiNamesLoading()
	local stat = io.open("/proc/self/stat")
	local pid = stat:read("*l"):match("^(%d+)")
	stat:close()
	local threads = io.popen("cat /proc/" .. pid .. "/task/*/comm 2>/dev/null")
	local names = threads:read("*a")
	threads:close()
	return names:find("MIDNAMLoader", 1, true) ~= nil
end

for _ = 1, 400 do
	if not midiNamesLoading() then break end
	sleep(0.05)
end
assert(not midiNamesLoading(), "Ardour's MIDI name loader is still running after 20 s")

-- The Dummy backend runs its cycles at the pace of a sound card, in real time.
assert(not AudioEngine:set_backend("None (Dummy)", "", ""):isnil(), "no Dummy backend")
assert(create_session(dir, "daw-test", 48000), "could not create a session in " .. dir)
local rate = Session:nominal_sample_rate()
local function at(seconds) return Temporal.timepos_t(math.floor(seconds * rate)) end
local ui = ARDOUR.TransportRequestSource.TRS_UI

local bus = Session:new_audio_route(2, 2, nil, 1, "Reverb", ARDOUR.PresentationInfo.Flag.AudioBus,
                                    ARDOUR.PresentationInfo.max_order):front()
assert(bus, "no bus")

local function insert(name, ptype, position)
	local processor = ARDOUR.LuaAPI.new_plugin(Session, name, ptype, "")
	assert(not processor:isnil(), "Ardour did not find the plug-in " .. name)
	assert(bus:add_processor_by_index(processor, position, nil, true) == 0, "could not insert " .. name)
	return processor
end

local noise = insert("ACE Noise", ARDOUR.PluginType.Lua, 0)
local gate = insert("ACE Mute", ARDOUR.PluginType.Lua, 1)
local reverb = insert(pluginName, pluginType, 2)

-- The automation control of a plug-in's parameter, by label (LV2 parameters
-- are properties, not ports, so all automatable controls are searched), and
-- where a fraction of its range lies.
local function automated(processor, label)
	local automatable = processor:to_automatable()
	local labels = {}
	for parameter in automatable:all_automatable_params():iter() do
		local control = automatable:automation_control(parameter, false)
		local descriptor = control:desc()
		labels[#labels + 1] = descriptor.label
		if descriptor.label == label then
			return control, function(fraction) return descriptor.lower + fraction * (descriptor.upper - descriptor.lower) end
		end
	end
	error("no parameter " .. label .. " among: " .. table.concat(labels, ", "))
end

local mute = automated(gate, "Mute")
local muteList = mute:alist()
muteList:add(at(0), 0, false, false)
muteList:add(at(0.5), 0, false, false)
muteList:add(at(0.5 + 1 / rate), 1, false, false)
mute:set_automation_state(ARDOUR.AutoState.Play)

local control, valueAt = automated(reverb, parameterName)
local list = control:alist()
list:add(at(0), valueAt(from), false, false)
list:add(at(1), valueAt(to), false, false)
control:set_automation_state(ARDOUR.AutoState.Play)

-- The render: a track recording the bus's output.
local render = Session:new_audio_track(2, 2, nil, 1, "Render", ARDOUR.PresentationInfo.max_order,
                                       ARDOUR.TrackMode.Normal, false, false):front()
assert(render, "no track")
render:input():disconnect_all(nil)
for channel = 0, 1 do
	assert(render:input():audio(channel):connect(bus:output():audio(channel):name()) == 0, "could not connect the render")
end
render:rec_enable_control():set_value(1, PBD.GroupControlDisposition.NoGroup)

-- Played as a user plays it: from the start, in real time, past the ramp, so
-- that the last change reaches the plug-in on Ardour's audio thread.
Session:request_locate(0, false, ARDOUR.LocateTransportDisposition.MustStop, ui)
sleep(0.2)
Session:maybe_enable_record(false)
Session:request_roll(ui)
sleep(1.8)
local played = Session:transport_sample() / rate
Session:request_stop(false, false, ui)
assert(played > 1.5, string.format("the transport played %.2f s in 1.8 s", played))
print(string.format("played %.2f s in real time; %s at %.6f", played, parameterName, control:get_value()))

-- Time for the recording to be written and for the plug-ins' message threads
-- to hear of the last change.
sleep(0.5)
assert(Session:save_state("", false, false, false, false, false) == 0, "the session was not saved")
print("saved")
