"""What the benchmark scripts share: the build, the folder to work in, the calls of an agent put together to phases."""
import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent

PHASES = {
    "Database.ExecuteRead": "read",
    "Engine.AddToExport": "entries",
    "Engine.DoExport": "export",
    "ZipArchive.NewZip": "pack",
    "ZipArchive.AppendFiles": "pack",
    "ZipArchive.WriteZipAndClose": "pack",
    "FileTools.CopyFile": "drop",
    "DirectoryCalls.List": "scan",
    "DirectoryListing.Next": "scan",
    "ZipArchive.OpenZip": "unpack",
    "ZipArchive.GetEntryByName": "unpack",
    "ZipArchive.CloseZip": "unpack",
    "ZipEntry.Extract": "unpack",
    "Engine.ImportFile": "import",
    "CompanyManager.CanOpenCompany": "open",
    "SharedCodeLibrary.PreTerminate": "close",
}


def phases(calls):
    """Seconds by phase; what belongs to none is the rest."""
    sums = {}
    for call, (seconds, _) in calls.items():
        phase = PHASES.get(call, "rest")
        sums[phase] = sums.get(phase, 0) + seconds
    return sums


def add_arguments(parser):
    parser.add_argument("--build", default="build/release", help="build folder, made at need")
    parser.add_argument("--keep", help="work in this folder, which stays")


def build(options, program):
    """Builds one benchmark program in the release preset and gives its path."""
    folder = ROOT / options.build
    subprocess.run([ROOT / "scripts/setup"], check=True)
    subprocess.run(["cmake", "--preset", "release", "-B", folder], cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", folder, "-j", str(os.cpu_count()), "--target", program], check=True,
                   stdout=subprocess.DEVNULL)
    return folder / "bin" / program


@contextlib.contextmanager
def work_folder(options):
    work = pathlib.Path(options.keep or tempfile.mkdtemp(prefix="qndr5-bench."))
    work.mkdir(parents=True, exist_ok=True)
    try:
        yield work
    finally:
        if not options.keep:
            shutil.rmtree(work, ignore_errors=True)
