"""Prints the benchmark results of a folder as tables of ratios.

A row is named Operation/Case/Peer/size; the own rows have the peer Vorlane. The ratio of a peer is its time
over ours, so that above 1 we are faster.
"""

import fnmatch
import json
import pathlib
import subprocess
import sys

OWN = "Vorlane"
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_results(folder, pattern):
    """Gives {(operation, case, size): {peer: (nanoseconds, counters)}} and the context of the runs."""
    table, context = {}, {}
    for path in sorted(pathlib.Path(folder).glob("*.json")):
        if not fnmatch.fnmatch(path.stem, pattern):
            continue
        data = json.loads(path.read_text())
        context = data["context"]
        for row in data["benchmarks"]:
            if row.get("run_type") == "aggregate" and row.get("aggregate_name") != "median":
                continue
            if "error_message" in row:
                continue
            parts = [part for part in row["run_name"].split("/") if ":" not in part and not part.endswith("_time")]
            operation, case, peer, size = (parts + ["", "", ""])[:4]
            time = row["cpu_time"] * NANOSECONDS[row["time_unit"]]
            table.setdefault((operation, case, size), {})[peer] = time
    return table, context


def command_output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return "unknown"


def machine_name():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return "unknown"


def readable(nanoseconds):
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= scale:
            return f"{nanoseconds / scale:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def main():
    table, context = read_results(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else "*")
    print(f"Machine: {machine_name()}, {context.get('num_cpus', '?')} cores, load {context.get('load_avg', '?')}")
    print(f"Compiler: {command_output('c++', '--version').splitlines()[0]}, -O3 -DNDEBUG")
    print(f"Commit: {command_output('git', 'describe', '--always', '--dirty')}")
    print()
    print("| operation | case | size | Vorlane | peers: time (times ours) |")
    print("|---|---|---:|---:|---|")
    for (operation, case, size), peers in sorted(table.items()):
        own = peers.get(OWN)
        cells = []
        for peer, time in peers.items():
            if peer != OWN:
                cells.append(f"{peer} {readable(time)}" + (f" ({time / own:.2f})" if own else ""))
        print(f"| {operation} | {case} | {size} | {readable(own) if own else '-'} | {', '.join(cells)} |")


if __name__ == "__main__":
    main()
