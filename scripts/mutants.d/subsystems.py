"""Which subsystem a source belongs to: the first row whose pattern is found in the path from the project's root.

The library's files are known by their names, whatever folder below private/ they are in and with or without the prefix;
a file that no row names goes by its folder.
"""
import re

LIBRARY = r"^(include/|src/NaviAppFramework/private/(\w+/)*)(Nfw)?"

ROWS = [
    ("", r"^platform/(contract|seams)/"),  # tests, and what only tests may touch
    ("platform", r"^platform/\w+/(src|include)/"),
    ("nfw-log", r"^tools/common/(\w+/)*(Record|Sensor|LogRecord|CivilTime)"),
    ("nfw-log", r"^tools/nfw-log/"),
    ("nfw-drive", r"^tools/(nfw-drive|common)/"),
    ("components", LIBRARY + r"(Component|PhaseIndex|SharedThreadComponent)"),
    ("settings", LIBRARY + r"(Setting|FileReplacement)"),
    ("mount", LIBRARY + r"Mount"),
    ("binary", LIBRARY + r"(Binary|FieldScanner|LittleEndian|Sentence(Fields|Encoder|Decoder)|ReportEncoder|Converters"
                         r"|DeadReckoningRecord|SatelliteNumber|NmeaBinaryLogData)"),
    ("replay", LIBRARY + r"(ReadWindow|RecordReader|LogReader|SysLogReader|ReplayTiming|TimedReplay|Play(Service|Msgs)"
                         r"|(Sys)?LogPlay)"),
    ("positioning", LIBRARY + r"(Gnss(\.|Logger|Sensor)|Gps|DeadReckoning|PlaySource|SourceSwitch|SentenceReplay)"),
    ("dispatchers", LIBRARY + r"\w*Dispatcher"),
    ("logger", LIBRARY + r"(StreamBuffer|LogRecord|LogFile|LogWriter|ZtFileCopy|Logger|SensorRecord|SensorSysLog"
                         r"|ServiceRequests)"),
    ("sentences", LIBRARY + r"(Decimal|Nmea|RecordFields|GsvBlocks)"),
    ("components", r"^src/.*/components/"),
    ("sentences", r"^src/.*/sentences/"),
    ("binary", r"^src/.*/binary/"),
    ("dispatchers", r"^src/.*/dispatch\w*/"),
    ("logger", r"^src/.*/recording/"),
    ("replay", r"^src/.*/replay/"),
    ("positioning", r"^src/.*/positioning/"),
    ("mount", r"^src/.*/mount/"),
    ("settings", r"^src/.*/settings/"),
    ("core", r"^(src|include)/"),
]

NAMES = ["core", "components", "sentences", "binary", "dispatchers", "positioning", "logger", "replay", "mount",
         "settings", "platform", "nfw-drive", "nfw-log"]


def subsystem_of(path):
    """The name, or an empty text for what gets no faults."""
    for name, pattern in ROWS:
        if re.search(pattern, path):
            return name
    return ""
