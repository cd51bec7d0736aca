"""The rows of bench/run about the whole program."""

import os
import signal
import statistics
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from table import CountRow, Row, tell

PROJECT = Path(__file__).resolve().parent.parent
BUILD = PROJECT / "build" / "release"
BENCH = BUILD / "bench"
FRAME_PERIOD = 0.009  # seconds
LATE = 2 * FRAME_PERIOD
STALL_FRAME = 111
ACTIONS = ("speed", "lists", "learn", "size", "report")  # of bench/operator.h
SETTINGS = """[General]
ControlModeLeft=KEYBOARD
ControlModeRight=MIDI
KeyboardStartL=68
"""


class Program:
    """A program with the probe: the unmodified game, or the empty program."""

    def __init__(self, stage, executable, play=False, core=None, stall=0, seconds=0, operate="",
                 slow_disk=False):
        self.folder = Path(tempfile.mkdtemp(dir=stage))
        (self.folder / ".pong").write_text(SETTINGS)
        self.stamps = self.folder / "stamps"
        self.stamps.write_bytes(bytes(8 * int((seconds + 30) / FRAME_PERIOD)))
        environment = os.environ | {
            "QT_QPA_PLATFORM": "offscreen", "QT_PLUGIN_PATH": str(BENCH / "plugins"),
            "QT_QPA_GENERIC_PLUGINS": "rallyvaneprobe", "RALLYVANE_BENCH_STAMPS": str(self.stamps),
            "RALLYVANE_BENCH_STALL": str(stall), "RALLYVANE_BENCH_OPERATE": operate}
        if slow_disk:
            environment["LD_PRELOAD"] = str(BENCH / "slowdisk.so")
        if play:
            environment["RALLYVANE_BENCH_PLAY"] = "1"
        command = [str(executable)]
        if core is not None:
            command = ["taskset", "-c", str(core)] + command
        self.started = time.monotonic()
        self.process = subprocess.Popen(command, cwd=self.folder, env=environment,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def wait_for(self, what):
        """The time at which the probe reported `what`."""
        for line in self.process.stdout:
            said, nanoseconds = line.decode().split()
            if said == what:
                return int(nanoseconds) * 1e-9
        sys.exit(f"{self.process.args} ended before it was {what}.")

    def processor_seconds(self):
        every_thread = ~self.process.pid << 3 | 2  # the CPU clock of another process
        return time.clock_gettime(every_thread)

    def resident_kilobytes(self):
        for line in Path(f"/proc/{self.process.pid}/status").read_text().splitlines():
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
        raise RuntimeError("no resident size")

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(20)

    def stamped(self):
        data = self.stamps.read_bytes()
        return [time * 1e-9 for (time,) in struct.iter_unpack("=q", data) if time]


def stage_game(stage):
    """The program with the timestamping host library, installed like the real one."""
    folder = Path(stage) / "program"
    folder.mkdir()
    for file in (BUILD / "bin" / "rallyvane", BUILD / "bin" / "winmm.so",
                 BUILD / "bin" / "xinput9_1_0.so", BENCH / "host" / "BEYONDIOx64.so"):
        os.link(file, folder / file.name) if os.stat(file).st_dev == os.stat(folder).st_dev \
            else subprocess.run(["cp", file, folder], check=True)
    return folder / "rallyvane"


def sorted_intervals(stamps):
    return sorted(b - a for a, b in zip(stamps, stamps[1:]))


def interval_spread(stamps):
    """p99 minus median of the intervals."""
    intervals = sorted_intervals(stamps)
    return intervals[len(intervals) * 99 // 100] - statistics.median(intervals)


def side_by_side(stage, game, cores, seconds):
    """One round: both programs in play at the same time, each on its own core."""
    programs = [Program(stage, game, play=True, core=cores[0], seconds=seconds),
                Program(stage, BENCH / "bin" / "bench_empty", core=cores[1], seconds=seconds)]
    programs[0].wait_for("playing")
    programs[1].wait_for("painted")
    time.sleep(1)
    begin = time.monotonic()
    before = [program.processor_seconds() for program in programs]
    time.sleep(seconds)
    end = time.monotonic()
    measured = []
    for program, used in zip(programs, before):
        stamps = [s for s in program.stamped() if begin <= s < end]
        measured.append({"processor": program.processor_seconds() - used,
                         "memory": program.resident_kilobytes(),
                         "cadence": interval_spread(stamps), "frames": len(stamps)})
    for program in programs:
        program.end()
    measured[0]["due"] = (end - begin) / FRAME_PERIOD
    return measured


def both_cores():
    cores = sorted(os.sched_getaffinity(0))[:2]
    return cores if len(cores) == 2 else cores * 2


def play_rows(stage, game, options):
    cores = both_cores()
    rounds = []
    for number in range(options.rounds):
        tell(f"in play, round {number + 1} of {options.rounds}: {options.seconds} s ...")
        rounds.append(side_by_side(stage, game, cores, options.seconds))
        cores.reverse()
    ours, empty = zip(*rounds)

    def row(name, what, allowed, unit):
        return Row(name, [o[what] for o in ours], [e[what] for e in empty], allowed, unit)

    return [row("cadence", "cadence", 1.25, "s"),
            Row("frames", [o["frames"] for o in ours], [o["due"] for o in ours], 0.995, "",
                at_least=True),
            row("processor", "processor", 1.5, "s"),
            row("memory", "memory", 1.3, "kB")]


def start_rows(stage, game, options):
    tell("start ...")
    moments = ("painted", "answering")
    times = {executable: {moment: [] for moment in moments}
             for executable in (game, BENCH / "bin" / "bench_empty")}
    for number in range(options.starts + 1):
        for executable, all_times in times.items():
            program = Program(stage, executable)
            taken = {moment: program.wait_for(moment) - program.started for moment in moments}
            program.end()
            if number > 0:  # the first start fills the file cache
                for moment in moments:
                    all_times[moment].append(taken[moment])
    ours, empty = times.values()
    return [Row("start", ours["painted"], empty["painted"], 1.25, "s"),
            Row("window answers", ours["answering"], empty["answering"], None, "s")]


def operated(stage, cores, seconds, variants):
    """Runs programs at the same time, each operated on its own core. Returns the sorted intervals
    of each one's frames."""
    programs = []
    for core, (executable, settings) in zip(cores, variants):
        programs.append(Program(stage, executable, core=core, seconds=seconds, **settings))
    for program, (_, settings) in zip(programs, variants):
        program.wait_for("playing" if settings.get("play") else "painted")
    time.sleep(1)
    begin = time.monotonic()
    time.sleep(seconds)
    end = time.monotonic()
    intervals = []
    for program in programs:
        if program.process.poll() is not None:
            sys.exit(f"{program.process.args} ended while it was operated.")
        intervals.append(sorted_intervals([s for s in program.stamped() if begin <= s < end]))
        program.end()
    return intervals


def nearly_longest(intervals):
    """The 99.9th percentile."""
    return intervals[len(intervals) * 999 // 1000]


def operator_rows(stage, game, options):
    cores = both_cores()
    empty = BENCH / "bin" / "bench_empty"
    rows, late, late_of_empty = [], 0, 0
    for action in ACTIONS:
        play = {"play": True, "operate": action}
        pairs = {"empty": [], "slow disk": []}
        for number in range(options.rounds):
            tell(f"operator, {action}, round {number + 1} of {options.rounds}: "
                 f"2 x {options.operator_seconds} s ...")
            for name, ours, other in (
                    ("empty", (game, play), (empty, {"operate": action})),
                    ("slow disk", (game, play | {"slow_disk": True}), (game, play))):
                pairs[name].append(operated(stage, cores, options.operator_seconds, (ours, other)))
            cores.reverse()
        for name, row, allowed in (("empty", f"operator: {action}", 1.25),
                                   ("slow disk", f"operator: {action}, slow disk", 1.1)):
            rows.append(Row(row, [nearly_longest(a) for a, _ in pairs[name]],
                            [nearly_longest(b) for _, b in pairs[name]], allowed, "s"))
        for ours, other in pairs["empty"]:
            late += sum(interval > LATE for interval in ours)
            late_of_empty += sum(interval > LATE for interval in other)
    return rows + [CountRow("operator: late frames", late, late_of_empty)]


def stall_rows(stage, game, options):
    tell("stall ...")
    counts = []
    for _ in range(options.rounds):
        program = Program(stage, game, play=True, stall=STALL_FRAME)
        program.wait_for("playing")
        time.sleep(STALL_FRAME * FRAME_PERIOD + 1 + 1.5)
        stamps = program.stamped()
        program.end()
        # The blocking call records its beginning and its end.
        begin, end = next((a, b) for a, b in zip(stamps, stamps[1:]) if b - a >= 1)
        counts.append(sum(end < s <= end + 1 for s in stamps))
    return [Row("stall", counts, [1 / FRAME_PERIOD] * len(counts), 1.05, "")]
