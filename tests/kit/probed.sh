#!/usr/bin/env bash
# tests/kit/probed.sh PROBED-HOST HOST-PROBE ROOT
# The probe finds nothing wrong with the example host, whose README tells what it leaves out, and nothing at all with the
# kit's; and each falsified service by its number.
set -euo pipefail
host=$1 probe=$2 root=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOST_PROBE_REPORT=$scratch/report HOME=$scratch
cd "$scratch"

fail() {
    echo "$1"
    cat report messages
    exit 1
}
"$host" example "$probe" >messages 2>&1 || fail "the example host failed"
! grep -q '^WRONG' report || fail "the example host is taken for a wrong one"
left=$(sed -n 's/^This host leaves out something of //p' report)
tr '\n' ' ' <"$root/samples/host/README.md" | grep -F "$left" >/dev/null || fail "its README does not name $left"
"$host" "$probe" >messages 2>&1 || fail "the kit's host failed"
! grep -v '^holds' report | grep -v ' hold, 0 left out, 0 wrong, 0 wait, 0 skipped$' || fail "the kit's host is taken for a wrong one"
! grep 'left in the host' messages || fail "the probe left something behind"

# What is broken (ProbedHost.cpp tells the verbs; 428:7 is selector 7 of 428); what the report says of it.
while IFS='|' read -r fault message; do
    fault=$(echo $fault)
    rm -f report
    BROKEN=$fault "$host" "$probe" >messages 2>&1 || true
    grep "^${message# }" report >/dev/null || fail "$fault: not found"
done <<'END'
repeats 16:1          | WRONG    16 tells none once all are popped
claims 16:2           | WRONG    16 tells none once all are popped
trusts 100            | WRONG    100 refuses a canvas that is gone
trusts 100            | WRONG    100 refuses a widget whose parent is gone
refuses 100           | left out 100 destroys a canvas
claims 101            | WRONG    102 it is the one that was stored
throws 102            | WRONG    102 reads a setting: it throws "lost settings"
forgets 102           | WRONG    102 it is the one that was stored
denies 102            | left out 102 reads a setting
claims 115            | WRONG    115 refuses a dialog that is gone
echoes 154            | WRONG    119 a change by a service calls no callback: [1-9]
appends 139           | WRONG    139 an index behind the last appends, another one inserts there: One Three Four Two
claims 141            | WRONG    141 the child that it has turned to is shown
claims 143            | WRONG    148 what is hidden is not shown
claims 145            | WRONG    908 it is checked
checks-all 145        | WRONG    908 the other one of its parent is not then
claims 148            | WRONG    148 a new dialog is not shown
refuses 148           | left out 148 says that a new widget is shown
claims 152            | WRONG    908 a signed spinner holds -7: returned 1, integer 0
refuses 152           | left out 152 sets its number
truncates 153         | WRONG    908 the number is the one that was set: returned 1, real -2
claims 155            | WRONG    155 refuses to let go what is not grabbed
claims 158:0          | WRONG    158 refuses an icon that is no picture
claims 158:3          | WRONG    158 refuses an icon that is gone
refuses 158:2         | left out 158 shows it on a menu item
refuses 159           | left out 159 reads an option
claims 163            | WRONG    163 by hand: a cancelled dialog gives 0 and no path
refuses 163:1         | left out 163 by hand: a path comes
claims 163:2          | WRONG    163 by hand: the directory's path comes
adds 207 -2000        | WRONG    207 it is a year
scales 246:0 3        | WRONG    246 that is such a number, too, and not after what is shown
scales 246:1 1e6      | WRONG    246 it is one number of seconds since the start of the reference year
claims 248            | WRONG    248 its id is one integer, and not 0
silent                | WRONG    PlatformAdded tells of a new platform: it never came
silent                | WRONG    253 EntityRemoved comes from inside the call: 0 times
hurries 253           | WRONG    253 the platform that EntityRemoved tells of is gone then
dies 253              | WRONG    253 the call returns: it has not, and the report ends here
claims 250            | WRONG    250 refuses the header of one that is gone
keeps 253             | WRONG    428 an overlay whose platform is gone stays, attached to none
unloads 253           | WRONG    253 that unloads no file
feet 256              | WRONG    256 it is where it was put, in radians and metres: .* 4920
hastens 317:0         | WRONG    317 it fires once, with its data and no sender: it fires from inside
claims 317:1          | WRONG    317 refuses a timeout that is cancelled
claims 319:1          | WRONG    319 refuses a mark for an action that is none
claims 319:2          | WRONG    319 refuses an action that is gone
unasked               | WRONG    319 by hand: the callback has no sender, and the state asked for: .* 0
claims 322:0          | WRONG    322 a name that is taken is refused
claims 322:1          | WRONG    322 refuses to withdraw it with another interface
claims 325            | WRONG    325 refuses a selector that there is not
claims 411:1          | WRONG    411 refuses a line that is gone
claims 418:1          | WRONG    418 straight down, the eye is that far above that place
turns 418:2           | WRONG    418 with an azimuth of 0 it looks north
turns 418:2           | WRONG    418 azimuths are clockwise
scales 424 57.3       | WRONG    424 it is in radians
scales 424 6          | WRONG    424 what is seen lies below the eye
mirrors 424:0         | WRONG    424 x grows to the right, and y downwards
doubles 424:0         | WRONG    424 the middle of the view, in the frame's pixels, is the place that is looked at
claims 424:2          | WRONG    424 that is one integer
adds 424:2 -1         | WRONG    424 that is one integer, 0 or the id of a platform: returned 1, integer 76
in-front 428:1        | WRONG    428 loads an overlay from a stream: the results do not stand behind
forgives 428:0        | WRONG    428 an unknown platform loads nothing
forgives 428:1        | WRONG    428 an overlay is attached to the platform that was given: returned 1, integer 0
claims 428:2          | WRONG    428 refuses an overlay that is gone
adds 428:6            | WRONG    428 one that is attached to none has 0
cuts 428:7            | WRONG    428 it holds both shapes, whole and once
repeats 428:7         | WRONG    428 it holds both shapes, whole and once
claims 428:7          | WRONG    428 refuses to have written all where nothing could be
claims 428:8          | WRONG    428 observers hear of it before the call returns
claims 428:9          | WRONG    428 an observer that is forgotten hears no more
claims 432:1          | WRONG    432 refuses a text that is gone
claims 439:1          | WRONG    439 a file is among those of its platform, and a stream is not
claims 440:1          | WRONG    440 refuses to forget one that it does not have
claims 440:2          | WRONG    440 refuses an item for a menu that is not open
refuses 440:2         | left out 440 by hand: the menu is about the overlay
astray                | WRONG    440 by hand: the menu is about the overlay, and its item calls back: the menu of "ZelList"
refuses 908           | left out 119 by hand: the callback has its wrapper as sender
adds 908:1            | WRONG    908 its value is the chosen index: returned 1, integer 2
adds 908:1 4294967296 | WRONG    908 opaque red is the negative integer whose bits are 0xff0000ff
guesses 908:2         | WRONG    908 a text that only begins as a number reads as 0: returned 1, real 12
claims 909:2          | WRONG    909 one of two stays
selects-first 909:6   | WRONG    909 a list for one has one selected, the last
claims 909:7          | WRONG    909 nothing is selected then
claims 909:8          | WRONG    909 refuses the text of item 2 of 2
claims 909:9          | WRONG    909 the changed one has its text
claims 911:2          | WRONG    911 its number keeps within them
claims 911:3          | WRONG    911 refuses to tell of rows of what is no list
claims 911:4          | WRONG    911 refuses to make a line of what is no text field
claims 999            | WRONG    999 refuses a number that there is not
scatters              | WRONG    every call comes on the thread of the first: event 16 did not
buries                | WRONG    100 the window and all in it is there until the probe destroys it
insists               | WRONG    119 by hand: .*: it is called again without a change
skips-selection       | WRONG    911 by hand: .*: the callback of 146 has not told that the row is selected
anonymous             | WRONG    118 the callback of "Run" has its wrapper as sender
anonymous             | WRONG    119 by hand: .*: the sender is not its wrapper
anonymous             | WRONG    911 by hand: .*: the sender is not its wrapper
data                  | WRONG    124 by hand: the callback finds the index 1: there is data
jumps                 | WRONG    by hand: motion, press .*: no motion came before the press
stutters              | WRONG    by hand: motion, press .*: there was more than one press
swallows              | WRONG    by hand: two presses come.*: no press came after LeftDoubleClick
holds                 | WRONG    by hand: motion, press .*: a press came, and no release
END
