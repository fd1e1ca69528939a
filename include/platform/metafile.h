// Windows metafiles: read from a file or from memory, placeable or not, and walked record by record. Nothing outside the file
// or a record is read, whatever their sizes say.
#pragma once

#include "drawing.h"
#include "types.h"

// A record: its size in 16-bit words, these three included, its kind, and its parameters.
struct tagMETARECORD {
  DWORD rdSize;
  WORD rdFunction;
  WORD rdParm[1];
};
using METARECORD = tagMETARECORD;

struct tagHANDLETABLE {
  void * objectHandle[1];
};
using HANDLETABLE = tagHANDLETABLE;

// The header of a metafile, 18 bytes in the file.
struct tagMETAHEADER {
  WORD mtType;        // 1 in memory, 2 on disk
  WORD mtHeaderSize;  // words
  WORD mtVersion;     // 0x100 or 0x300
  DWORD mtSize;       // words of the whole metafile
  WORD mtNoObjects;   // objects that live at one time
  DWORD mtMaxRecord;  // words of the longest record
  WORD mtNoParameters;
};
using METAHEADER = tagMETAHEADER;

// Kinds of record that drawings are made of. Others exist.
enum MetaFunction : WORD {
  META_EOF = 0x0000,
  META_SETBKMODE = 0x0102,
  META_SETMAPMODE = 0x0103,
  META_SELECTOBJECT = 0x012D,
  META_DELETEOBJECT = 0x01F0,
  META_SETBKCOLOR = 0x0201,
  META_SETTEXTCOLOR = 0x0209,
  META_SETWINDOWORG = 0x020B,
  META_SETWINDOWEXT = 0x020C,
  META_SETVIEWPORTORG = 0x020D,
  META_SETVIEWPORTEXT = 0x020E,
  META_LINETO = 0x0213,
  META_MOVETO = 0x0214,
  META_CREATEPENINDIRECT = 0x02FA,
  META_CREATEFONTINDIRECT = 0x02FB,
  META_CREATEBRUSHINDIRECT = 0x02FC,
  META_POLYGON = 0x0324,
  META_POLYLINE = 0x0325,
  META_ELLIPSE = 0x0418,
  META_RECTANGLE = 0x041B,
  META_SETPIXEL = 0x041F,
  META_TEXTOUT = 0x0521,
  META_ROUNDRECT = 0x061C,
  META_ARC = 0x0817,
  META_PIE = 0x081A,
  META_CHORD = 0x0830,
  META_EXTTEXTOUT = 0x0A32
};

// A metafile; null is none.
struct HMETAFILE__;
using HMETAFILE = HMETAFILE__ *;

// Called for each record; 0 ends the walk. The record is a copy that the callee may change. There is no device, and the table
// holds no objects.
using MFENUMPROC = int (*)(HDC dc, HANDLETABLE * table, METARECORD * record, int objects, LPARAM user);

// The metafile of the file, or of a copy of the bytes, to be given back to DeleteMetaFile. Null for a file that is missing,
// is a folder, pipe or device, or can't be read, and for bytes that don't begin as a metafile. A file under another's lock for
// writing can't be read.
ZP_API HMETAFILE GetMetaFile(char const * path);
ZP_API HMETAFILE SetMetaFileBitsEx(UINT count, BYTE const * data);
ZP_API BOOL DeleteMetaFile(HMETAFILE metafile);  // 0 for null

// Calls proc for each record in front of the one that ends the metafile, or to the end of the bytes if there is none. 0 if proc
// ended the walk or the rest of the bytes is no whole record; the records before it have been given. The sizes that the header
// tells have no say.
ZP_API BOOL EnumMetaFile(HDC dc, HMETAFILE metafile, MFENUMPROC proc, LPARAM user);

namespace zp {

// What stands in front of a metafile's records; all 0 for null.
struct MetaFileFacts {
  bool placeable;  // else the next two are 0
  RECT bounds;     // logical units
  WORD unitsPerInch;
  METAHEADER header;  // as it stands, true or not
};
ZP_API MetaFileFacts GetMetaFileFacts(HMETAFILE metafile);

}  // namespace zp
