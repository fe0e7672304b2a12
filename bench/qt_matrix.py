#!/usr/bin/env python3
"""Repair matrix for QuickTime-family files (mov, mp4, 3gp).

Recordings of each codec pair are made once by ffmpeg into
bench/cache/qt_matrix/, each with a sample: another recording with the same
settings, another picture, sound and length. Copies of every recording are
damaged (healthy, zeroed, cut, holes, half), repaired by the batch runner
(again with the sample when the first pass says "repaired":false) and
compared with the healthy original frame by frame: a frame counts as
bit-exact when its decoded picture's hash is among the original's.

Expected frames: all of them for healthy, zeroed and cut; for half, the
frames whose packets lie wholly in the kept half; for holes, the frames whose
packets no hole touches, and (gop-exp) those in no GOP that a hole touches.
Sound is counted in decoded seconds, the video in the track's duration.
"""
import argparse
import collections
import concurrent.futures
import fractions
import hashlib
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CACHE = os.path.join(ROOT, 'bench', 'cache', 'qt_matrix')
DAMAGES = ('healthy', 'zeroed', 'cut', 'holes', 'half')
HOLE = 64 * 1024
RUN_LIMIT = 600  # seconds for one batch run or one decode

VIDEO = {
    'h264': ['-c:v', 'libx264', '-pix_fmt', 'yuv420p'],
    'hevc': ['-c:v', 'libx265', '-tag:v', 'hvc1', '-x265-params', 'log-level=error',
             '-pix_fmt', 'yuv420p'],
    'mjpeg': ['-c:v', 'mjpeg', '-q:v', '3', '-pix_fmt', 'yuvj420p'],
    'prores': ['-c:v', 'prores_ks', '-profile:v', '0'],
    'mpeg4': ['-c:v', 'mpeg4', '-pix_fmt', 'yuv420p'],
}
# sound: encoder arguments, sample rate, channels
SOUND = {
    'aac': (['-c:a', 'aac', '-b:a', '128k'], 48000, 2),
    'sowt': (['-c:a', 'pcm_s16le'], 48000, 2),
    'twos': (['-c:a', 'pcm_s16be'], 48000, 2),
    'in24': (['-c:a', 'pcm_s24be'], 48000, 2),
    # Above 65535 Hz the mov muxer describes any PCM as 'lpcm'.
    'lpcm': (['-c:a', 'pcm_s24le'], 96000, 2),
    'none': None,
}
AAC_3GP = (['-c:a', 'aac', '-b:a', '24k'], 16000, 1)


class Case:
    def __init__(self, video, sound, ext, rate='25', size=None, sound_args=None):
        self.video, self.ext, self.rate, self.size = video, ext, rate, size
        self.sound = sound_args if sound_args else SOUND[sound]
        self.fps = '%g' % round(float(fractions.Fraction(rate)), 3)
        self.name = '%s-%s.%s@%s' % (video, sound, ext, self.fps)
        self.stem = re.sub(r'[^\w.-]', '_', self.name).replace('.', '_')


def all_cases():
    cases = []
    for ext in ('mov', 'mp4'):
        for rate in ('25', '30000/1001'):
            cases.append(Case('h264', 'aac', ext, rate))
    cases += [Case('h264', 'aac', 'mov', '50'), Case('h264', 'aac', 'mov', '24000/1001')]
    cases += [Case('h264', s, 'mov') for s in ('sowt', 'twos', 'in24', 'lpcm', 'none')]
    cases += [Case('hevc', 'aac', 'mov', r) for r in ('25', '30000/1001')]
    cases += [Case('hevc', s, 'mov') for s in ('sowt', 'twos', 'in24', 'none')]
    cases += [Case('mjpeg', 'sowt', 'mov'), Case('mjpeg', 'twos', 'mov'),
              Case('prores', 'sowt', 'mov'),
              Case('mpeg4', 'aac', '3gp', size='176x144', sound_args=AAC_3GP)]
    return cases


def run(cmd, **kw):
    return subprocess.run(cmd, capture_output=True, text=True, timeout=RUN_LIMIT, **kw)


# --- recordings -------------------------------------------------------------

def record(case, out, seconds, size, sample):
    """Encodes a recording; the sample gets another hue, tone and noise level."""
    size = case.size or size
    inputs = ['-f', 'lavfi', '-i', 'testsrc2=size=%s:rate=%s' % (size, case.rate)]
    graph = ['[0:v]hue=h=%d[v]' % (120 if sample else 0)]
    maps = ['-map', '[v]']
    sound_args = []
    if case.sound:
        args, rate, channels = case.sound
        tone, noise, seed = (1000, 0.02, 2) if sample else (440, 0.05, 1)
        inputs += ['-f', 'lavfi', '-i', 'sine=frequency=%d:sample_rate=%d' % (tone, rate),
                   '-f', 'lavfi', '-i',
                   'anoisesrc=color=pink:amplitude=%g:sample_rate=%d:seed=%d' % (noise, rate, seed)]
        graph.append('[1:a][2:a]amix=inputs=2:normalize=0[a]')
        maps += ['-map', '[a]']
        sound_args = args + ['-ar', str(rate), '-ac', str(channels)]
    tmp = os.path.join(os.path.dirname(out), '.part-' + os.path.basename(out))
    p = run(['ffmpeg', '-y', '-v', 'error', '-nostdin', *inputs,
             '-filter_complex', ';'.join(graph), *maps, '-t', str(seconds),
             *VIDEO[case.video], *sound_args, tmp])
    if p.returncode != 0:
        sys.exit('ffmpeg failed for %s:\n%s' % (out, p.stderr))
    os.replace(tmp, out)


def frame_hashes(path):
    """Hashes of the decoded pictures of the first video stream. One decoding
    thread, so that concealed errors come out the same each time; frames with
    the same time stamp are all kept."""
    try:
        p = run(['ffmpeg', '-v', 'error', '-nostdin', '-threads', '1', '-i', path, '-map', '0:v:0',
                 '-fps_mode', 'passthrough', '-f', 'framemd5', '-'])
    except subprocess.TimeoutExpired:
        return []
    return [line.rsplit(',', 1)[1].strip() for line in p.stdout.splitlines()
            if line and not line.startswith('#')]


def probe(path, *args):
    p = run(['ffprobe', '-v', 'error', '-of', 'json', *args, path])
    try:
        return json.loads(p.stdout or '{}')
    except ValueError:
        return {}


def video_packets(path):
    """(pos, size, key) of each video packet, in decoding order."""
    info = probe(path, '-select_streams', 'v:0', '-show_entries', 'packet=pos,size,flags')
    return [(int(p['pos']), int(p['size']), 'K' in p.get('flags', ''))
            for p in info.get('packets', [])]


def audio_seconds(path):
    """Decoded samples of the first sound stream over its rate, None without one."""
    info = probe(path, '-select_streams', 'a:0',
                 '-show_entries', 'stream=sample_rate:frame=nb_samples')
    streams = info.get('streams', [])
    if not streams or not int(streams[0].get('sample_rate', 0)):
        return None
    samples = sum(int(f.get('nb_samples', 0)) for f in info.get('frames', []))
    return samples / int(streams[0]['sample_rate'])


def video_seconds(path):
    info = probe(path, '-select_streams', 'v:0', '-show_entries', 'stream=duration')
    try:
        return float(info['streams'][0]['duration'])
    except (KeyError, IndexError, ValueError):
        return None


def measure(path):
    return {'hashes': frame_hashes(path), 'audio': audio_seconds(path),
            'video': video_seconds(path)}


def prepare(case, opts):
    """Makes (or finds) the recording and its sample; measures the recording."""
    tag = '%ds-%s' % (opts.seconds, case.size or opts.size)
    original = os.path.join(CACHE, '%s-%s.%s' % (case.stem, tag, case.ext))
    sample = os.path.join(CACHE, '%s-%s-sample.%s' % (case.stem, tag, case.ext))
    sample_seconds = 6 if opts.seconds == 8 else 8
    if not os.path.exists(original):
        record(case, original, opts.seconds, opts.size, False)
    if not os.path.exists(sample):
        record(case, sample, sample_seconds, opts.size, True)
    ref = measure(original)
    ref.update(original=original, sample=sample, packets=video_packets(original))
    return ref


# --- damage -----------------------------------------------------------------

def atoms(buf, start, end):
    """(position, header size, size, type) of each atom in buf[start:end]."""
    out, pos = [], start
    while pos + 8 <= end:
        size, kind = struct.unpack_from('>I4s', buf, pos)
        head = 8
        if size == 1 and pos + 16 <= end:
            size, head = struct.unpack_from('>Q', buf, pos + 8)[0], 16
        elif size == 0:
            size = end - pos
        if size < head:
            break
        out.append((pos, head, size, kind))
        pos += size
    return out


def top(buf, kind):
    return next((a for a in atoms(buf, 0, len(buf)) if a[3] == kind), None)


def drop_movie(buf):
    """The file as a recording cut off before its movie was written: all up to
    the movie; with the movie ahead of the media data, ftyp and mdat alone."""
    moov, mdat = top(buf, b'moov'), top(buf, b'mdat')
    if not moov:
        return buf
    if not mdat or moov[0] > mdat[0]:
        return buf[:moov[0]]
    ftyp = top(buf, b'ftyp')
    head = buf[ftyp[0]:ftyp[0] + ftyp[2]] if ftyp else b''
    return head + buf[mdat[0]:mdat[0] + mdat[2]]


CONTAINERS = {b'moov', b'trak', b'mdia', b'minf', b'stbl'}


def zero_tables(buf, start, end):
    """Zeroes the entries of every stco, co64 and stsz table below start..end."""
    for pos, head, size, kind in atoms(buf, start, end):
        body = pos + head
        if kind in CONTAINERS:
            zero_tables(buf, body, pos + size)
        elif kind in (b'stco', b'co64'):
            count = struct.unpack_from('>I', buf, body + 4)[0]
            width = 8 if kind == b'co64' else 4
            first = body + 8
            buf[first:first + count * width] = bytes(count * width)
        elif kind == b'stsz':
            fixed, count = struct.unpack_from('>II', buf, body + 4)
            if fixed == 0:  # a constant size has no table
                first = body + 12
                buf[first:first + count * 4] = bytes(count * 4)


def hole_ranges(buf):
    pos, head, size, _ = top(buf, b'mdat')
    start, length = pos + head, size - head
    return [(start + length * k // 4, start + length * k // 4 + HOLE) for k in (1, 2, 3)]


def damage(kind, original, out):
    """Writes the damaged copy; returns the byte ranges that were lost (for the
    expected frame count)."""
    with open(original, 'rb') as f:
        buf = bytearray(f.read())
    lost = []
    if kind == 'zeroed':
        moov = top(buf, b'moov')
        zero_tables(buf, moov[0], moov[0] + moov[2])
    elif kind == 'cut':
        buf = drop_movie(buf)
    elif kind == 'holes':
        lost = hole_ranges(buf)
        for a, b in lost:
            buf[a:b] = bytes(b - a)
        buf = drop_movie(buf)
    elif kind == 'half':
        lost = [(len(buf) // 2, len(buf))]
        buf = drop_movie(buf[:len(buf) // 2])
    with open(out, 'wb') as f:
        f.write(buf)
    return lost


def expected(kind, packets, lost):
    """Frames whose packets no lost range touches, and frames of GOPs that no
    lost range touches (for holes; the same figure otherwise)."""
    def hit(pos, size):
        return any(pos < b and a < pos + size for a, b in lost)
    gops, gop = [], 0
    for _, _, key in packets:
        gop += key
        gops.append(gop)
    touched = {g for g, (pos, size, _) in zip(gops, packets) if hit(pos, size)}
    plain = sum(not hit(pos, size) for pos, size, _ in packets)
    if kind != 'holes':
        return plain, plain
    return plain, sum(g not in touched for g in gops)


# --- repair -----------------------------------------------------------------

def sha256(path):
    h = hashlib.sha256()
    with open(path, 'rb') as f:
        for block in iter(lambda: f.read(1 << 20), b''):
            h.update(block)
    return h.hexdigest()


def batch_pass(batch, work, path, sample=None):
    """One run of the batch runner: (seconds, last verdict, outputs, note)."""
    cmd = [batch, '--work-root', work] + (['--reference', sample] if sample else [])
    start = time.monotonic()
    try:
        p = run(cmd + [path])
    except subprocess.TimeoutExpired:
        return RUN_LIMIT, None, [], 'timeout'
    seconds = time.monotonic() - start
    if p.returncode != 0:
        print('%s: %s' % (os.path.basename(path), p.stderr.strip()[-500:]), file=sys.stderr)
    verdict, outputs = None, []
    for line in p.stdout.splitlines():
        try:
            event = json.loads(line)
        except ValueError:
            continue
        if event.get('event') == 'verdict':
            verdict = event.get('repaired')
        elif event.get('event') == 'end':
            outputs = event.get('outputs') or []
    return seconds, verdict, outputs, '' if p.returncode == 0 else 'exit=%d' % p.returncode


def word(verdict):
    return {True: 'true', False: 'false', None: '?'}[verdict]


def repair_one(case, kind, ref, opts, scratch):
    folder = os.path.join(scratch, '%s-%s' % (case.stem, kind))
    os.makedirs(folder)
    name = '%s-%s.%s' % (case.stem, kind, case.ext)
    path = os.path.join(folder, name)
    work = os.path.join(folder, 'work')
    os.makedirs(work)
    lost = damage(kind, ref['original'], path)
    exp, exp_gop = expected(kind, ref['packets'], lost)
    before = sha256(path)

    seconds, verdict, outputs, note = batch_pass(opts.batch, work, path)
    verdicts = ['1st:' + word(verdict)]
    notes = [note]
    if kind in ('cut', 'holes', 'half') and verdict is False:
        shutil.rmtree(os.path.join(work, 'Repaired'), ignore_errors=True)
        more, verdict, outputs, note = batch_pass(opts.batch, work, path, ref['sample'])
        seconds += more
        verdicts.append('ref:' + word(verdict))
        notes.append(note)
    if sha256(path) != before:
        notes.append('INPUT-CHANGED')
    out = outputs[-1] if outputs else os.path.join(work, 'Repaired', name)

    got = measure(out) if os.path.isfile(out) else None
    if got is None:
        notes.append('no-output')
        got = {'hashes': [], 'audio': None, 'video': None}
    exact = sum((collections.Counter(ref['hashes']) & collections.Counter(got['hashes'])).values())
    shutil.rmtree(folder, ignore_errors=True)
    return {'case': case.name, 'damage': kind, 'fps': case.fps, 'expected': exp,
            'expected_gop': exp_gop, 'exact': exact, 'decoded': len(got['hashes']),
            'audio': (got['audio'], ref['audio']), 'video': (got['video'], ref['video']),
            'time': seconds, 'verdict': ' '.join(verdicts + [n for n in notes if n])}


# --- table ------------------------------------------------------------------

ROW = '%-20s %-7s %6s %8s %7s %9s %7s %7s %13s %13s %7s  %s'


def pair(got, orig):
    if got is None and orig is None:
        return '-'
    return '%s/%s' % tuple('-' if v is None else '%.2f' % v for v in (got, orig))


def percent(part, whole):
    return '%.1f' % (100.0 * part / whole) if whole else '-'


def print_table(rows):
    print(ROW % ('case', 'damage', 'fps', 'expected', 'gop-exp', 'bit-exact', 'decoded',
                 '%exact', 'audio s o/o', 'video s o/o', 'time s', 'verdict'))
    for r in rows:
        print(ROW % (r['case'], r['damage'], r['fps'], r['expected'],
                     r['expected_gop'] if r['damage'] == 'holes' else '',
                     r['exact'], r['decoded'], percent(r['exact'], r['expected']),
                     pair(*r['audio']), pair(*r['video']), '%.2f' % r['time'], r['verdict']))
    exact = sum(r['exact'] for r in rows)
    exp = sum(r['expected'] for r in rows)
    exp_gop = sum(r['expected_gop'] for r in rows)
    print('total: %d / %d bit-exact frames (%s%%); against GOP-adjusted holes %d / %d (%s%%)'
          % (exact, exp, percent(exact, exp), exact, exp_gop, percent(exact, exp_gop)))


def main():
    ap = argparse.ArgumentParser(description=__doc__.split('\n\n')[0])
    ap.add_argument('--build', default='build', help='build folder (default build)')
    ap.add_argument('--only', metavar='REGEX', help='cases whose names match')
    ap.add_argument('--seconds', type=int, default=12, help='recording length (default 12)')
    ap.add_argument('--size', default='320x240', help='picture size WxH (default 320x240)')
    ap.add_argument('--jobs', type=int, default=1, help='cases at once (default 1)')
    opts = ap.parse_args()
    opts.batch = os.path.abspath(os.path.join(ROOT, opts.build, 'bin', 'reelwright-batch'))
    if not os.access(opts.batch, os.X_OK):
        sys.exit('build %s first (bash scripts/setup.sh %s)' % (opts.batch, opts.build))
    cases = [c for c in all_cases() if not opts.only or re.search(opts.only, c.name)]
    if not cases:
        sys.exit('no case matches %s' % opts.only)
    os.makedirs(CACHE, exist_ok=True)

    with tempfile.TemporaryDirectory(prefix='qt_matrix.') as scratch, \
            concurrent.futures.ThreadPoolExecutor(max(1, opts.jobs)) as pool:
        refs = dict(zip((c.name for c in cases), pool.map(lambda c: prepare(c, opts), cases)))
        runs = [(c, d) for c in cases for d in DAMAGES]

        def one(job):
            row = repair_one(*job[:2], refs[job[0].name], opts, scratch)
            print('%-20s %-7s %s' % (row['case'], row['damage'], row['verdict']),
                  file=sys.stderr, flush=True)
            return row
        rows = list(pool.map(one, runs))
    print_table(rows)
    return 0


if __name__ == '__main__':
    sys.exit(main())
