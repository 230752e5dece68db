#!/usr/bin/env python3
"""Runs the command line, built with AddressSanitizer and UndefinedBehaviorSanitizer, over a
sweep of designs, odd values and damaged design files, and counts what went wrong: a crash, a
sanitizer report, an exit status the option does not allow, or JSON that does not parse.

    make build-sanitize
    scripts/robustness-sweep.py [--cli build-sanitize/src/cli/nerivane-cli] [--jobs 2]

It takes about twenty minutes on two cores. Prints one line per part and exits 1 when any
run went wrong, listing the first few.
"""
import argparse
import concurrent.futures
import itertools
import json
import os
import random
import subprocess
import sys
import tempfile

TOPOLOGIES = ['vcvs-lpf', 'mfb-lpf', 'vcvs-hpf', 'mfb-hpf', 'vcvs-bpf', 'mfb-bpf', 'notch']
RESPONSES = ['butterworth', 'chebyshev', 'papoulis', 'bessel', 'gaussian', 'adjustable-gauss']
POLES = ['1', '2', '3', '4', '5', '6', '7', '8', '10', '20']
MODES = ['exact', 'standard', 'worst']
SWEEPS = ['linear', 'half-to-double', 'two-octaves', 'three-octaves', 'one-decade',
          'two-decades']
OPAMPS = ['ideal', '1M,50']
TRACES = ['mag10', 'mag10,mag1,phase,gd,pulse']

BOX_OPTIONS = ['--poles', '--f0', '--bw', '--gain-db', '--ripple', '--gamma', '--c1', '--c2',
               '--runs', '--threshold']
OTHER_OPTIONS = ['--seed', '--width', '--height', '--opamp', '--res-tol', '--topology']
ODD_VALUES = ['', ' ', 'abc', 'nan', 'NaN', 'inf', '-inf', '1e400', '-1e400', '1e-400', '0',
              '-0', '-1', '1e308', '-1e308', '0x10', '$10', '  5  ', '5k', '2.2kHz', '1,5',
              '1.5.5', '99999999999999999999999', '-99999999999999999999999', '1e-15', '1e15',
              '0.000000001', '\u00b5', '10n,abc,5p', ',', ',,', '1e', '+', '--5', '5e+',
              '\t', 'k', '\u03a9', '100p' * 30, '1' * 400]

SANITIZER_WORDS = ('AddressSanitizer', 'LeakSanitizer', 'runtime error:', 'UndefinedBehavior')


def run(cli, args, allowed, parse_json=True):
    """Returns None when the run was as it should be, else a description."""
    env = dict(os.environ, ASAN_OPTIONS='detect_leaks=1', UBSAN_OPTIONS='print_stacktrace=1')
    try:
        done = subprocess.run([cli] + args, capture_output=True, timeout=120, env=env)
    except subprocess.TimeoutExpired:
        return 'hung: ' + ' '.join(args)
    err = done.stderr.decode('utf-8', 'replace')
    if any(word in err for word in SANITIZER_WORDS):
        return 'sanitizer: ' + ' '.join(args) + '\n' + err[:2000]
    if done.returncode not in allowed:
        return 'exit %d: %s\n%s' % (done.returncode, ' '.join(args), err[:500])
    if parse_json and done.returncode == 0:
        try:
            json.loads(done.stdout)
        except ValueError:
            return 'bad JSON: ' + ' '.join(args)
    return None


def designs():
    for t, r, p, m, s, o, tr in itertools.product(TOPOLOGIES, RESPONSES, POLES, MODES, SWEEPS,
                                                  OPAMPS, TRACES):
        yield ['--topology', t, '--response', r, '--poles', p, '--mode', m, '--sweep', s,
               '--opamp', o, '--traces', tr, '--runs', '3', '--json', '-']


def odd_values():
    for option, value in itertools.product(BOX_OPTIONS, ODD_VALUES):
        yield [option, value, '--json', '-'], (0,)
    for option, value in itertools.product(OTHER_OPTIONS, ODD_VALUES):
        yield [option, value, '--json', '-'], (0, 2)


def damaged_files(folder, count):
    """Design files written by the program with bytes changed, cut short or made longer."""
    rng = random.Random(1)
    sources = []
    for index, design in enumerate([['--poles', '7'], ['--topology', 'mfb-bpf', '--poles', '4'],
                                    ['--topology', 'notch', '--mode', 'worst']]):
        path = os.path.join(folder, 'source%d.kq_opamp' % index)
        subprocess.run([ARGS.cli] + design + ['--save', path], check=True, capture_output=True)
        sources.append(open(path, 'rb').read())
    for index in range(count):
        data = bytearray(rng.choice(sources))
        kind = rng.randrange(3)
        if kind == 0:
            for _ in range(rng.randrange(1, 16)):
                data[rng.randrange(len(data))] = rng.randrange(256)
        elif kind == 1:
            data = data[:rng.randrange(len(data))]
        else:
            data += bytes(rng.randrange(256) for _ in range(rng.randrange(1, 64)))
        path = os.path.join(folder, 'damaged%d.kq_opamp' % index)
        with open(path, 'wb') as out:
            out.write(data)
        yield ['--open', path, '--json', '-'], (0, 1)


def sweep(name, cases):
    failures = []
    total = 0
    with concurrent.futures.ThreadPoolExecutor(ARGS.jobs) as pool:
        for result in pool.map(lambda case: run(ARGS.cli, *case), cases):
            total += 1
            if result:
                failures.append(result)
    print('%s: %d runs, %d went wrong' % (name, total, len(failures)), flush=True)
    return failures


if __name__ == '__main__':
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--cli', default='build-sanitize/src/cli/nerivane-cli')
    parser.add_argument('--jobs', type=int, default=os.cpu_count() or 2)
    parser.add_argument('--files', type=int, default=3300)
    ARGS = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        wrong = sweep('designs', ((args, (0,)) for args in designs()))
        wrong += sweep('odd values', odd_values())
        wrong += sweep('damaged design files', list(damaged_files(scratch, ARGS.files)))
    for failure in wrong[:10]:
        print(failure)
    sys.exit(1 if wrong else 0)
