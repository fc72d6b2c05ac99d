// SPDX-License-Identifier: MIT
/* libIWL: the image window library. A process attaches to image windows by number, asks what they show, draws
 * overlay graphics into them and reads the image file that they show.
 *
 * Slots are small positive integers (1 to IW_MAX_SLOTS) that the caller chooses at IWAttachWin.
 * Data coordinates are image pixels: (0, 0) is the top left corner of the top left pixel, x to the right, y
 * down, the integer part names the pixel. Sections are addressed by 0-based z, w (wavelength), t (time
 * point), p (position). All calls are made from one thread. */
#ifndef IWL_H
#define IWL_H

#include <X11/Xlib.h>

#ifdef __cplusplus
extern "C" {
#endif

#define IW_MAX_SLOTS 16
/* Most wavelengths that an image can have: the size of the tables that IWRtImgColor and IMRtWav fill. */
#define IW_MAX_WAVES 1024
/* Size of the buffer that IWRtFilename fills. */
#define IW_FILENAME_SIZE 256

/* Connects the process to the X server and to the image windows. Must come first. argv[0] names the process
 * in messages. Returns 1. Without a display it writes one sentence to standard error and exits with status
 * -1. When the only argument is --help or --version, it prints that instead, without a display, and exits
 * with status 0. */
int IWAttach(int argc, char** argv);

/* Attaches image window windowNumber as a slot; mode "ro" is the only one. Opens the image file that it
 * shows. Returns 1; any other value is a failure (no such window, unreadable file: the reason goes to
 * standard error). */
int IWAttachWin(int slot, int windowNumber, const char* mode);

/* The canvas window of a slot, None when it is not attached. */
Window IWRtWID(int slot);

/* Asks the image window to show the overlay changes made since the last call. Returns 1, 0 when not attached.
 */
int IWDisplay(int slot);

/* Where a pointer event lies in its image window. Fills window (window number), x, y (data coordinates,
 * fractional), z (section index shown there), subPanel (0) and panel (0-based index of the panel, row by row;
 * 0 in a single-panel window). Returns 1 when the position lies on the displayed image, else 0 with nothing
 * filled. */
int IWGetButPressInfo(XEvent* event, int* window, float* x, float* y, float* z, int* subPanel, int* panel);

/* Multi-panel display: panels across and down (1, 1 for a single panel). Returns 1, 0 when not attached. */
int IWRtMulDis(int slot, int* columns, int* rows);
/* What the panels differ in: 0 single, 1 z, 2 wavelength, 3 time point. */
int IWRtMulDisStyle(int slot);

/* The displayed section, 0-based. Returns 1, 0 when not attached. */
int IWRtDisSec_ZWTP(int slot, int* z, int* w, int* t, int* p);
/* 1 when wavelength w is displayed, else 0. */
int IWIsWaveMap(int slot, int w);
/* Display colour of every wavelength: 0 white, 1 red, 2 green, 3 yellow, 4 blue, 5 magenta, 6 cyan. colors
 * has room for IW_MAX_WAVES ints; as many as the image has wavelengths are filled. Returns 1, 0 when not
 * attached. */
int IWRtImgColor(int slot, int* colors);

/* Sections that a scratch window holds; 0 when the window shows a finished file. */
int IWRtScratchSize(int slot);
/* Number of z sections of wavelength w that have arrived in a scratch window. */
int IWRtTopImgLoc(int slot, int w);

/* Path of the image file, into name (IW_FILENAME_SIZE bytes, always terminated). what is 0. Returns 1; 0 when
 * not attached or when the path does not fit (name is then empty). */
int IWRtFilename(int slot, int what, char* name);

/* Stage position in microns of a data position on the displayed time point and position: the section's own
 * stage position plus pixel times spacing. stage receives x, y, z. Returns 1, 0 when not attached (stage is
 * untouched). */
int IWDataToTSPos(float x, float y, float z, int slot, float* stage);

/* Overlay graphics. Each add returns an id > 0, or 0 when not attached, when the image window is gone or when
 * a coordinate is not finite. width is in window pixels, dash 0 is solid, color 0 to 6 as the display
 * colours, 7 the annotation colour. The 5D calls bind a graphic to a time point and a panel (-1: all) and to
 * the section of its z (negative: all). The panel of a wavelength display stands for its wavelength; when the
 * display differs in something else the graphic shows in every panel. Changes show at the next IWDisplay. */
int IWGrAddPt2D(int slot, int width, int color, float x, float y);
int IWGrAddPt5D(int slot, int timePoint, int panel, int width, int color, float x, float y, float z);
int IWGrAddLn2D(int slot, int width, int dash, int color, float x0, float y0, float x1, float y1);
int IWGrAddLn5D(int slot, int timePoint, int panel, int width, int dash, int color, float x0, float y0,
                float z0, float x1, float y1, float z1);
/* Removes one graphic of this process; an id that is already gone is ignored. Returns 1, 0 when not attached.
 */
int IWGrRmGrID(int slot, int id);
/* Removes every graphic that this process drew in the window. Returns 1, 0 when not attached. */
int IWGrRmAllGrID(int slot);

/* User configuration: an X resource file, $XDG_CONFIG_HOME/kelvora/config (else ~/.config/kelvora/config),
 * read at the first call. IWGetConfig returns the value (owned by the library, valid until the next IW*Config
 * call) or a null pointer. IWGetConfigBoolean returns 1 and fills value (0 or 1) when the key exists and is a
 * boolean, else 0. IWSetConfig and IWSetConfigBoolean change the value in memory; IWSaveUserConfig merges the
 * changes into the file, replaced atomically, and returns 1, or 0 after a line on standard error. A key
 * consists of letters, digits, '_' and
 * '-'; a colon at its end does not count. A null value removes the key. A boolean is true, on, yes, 1, false,
 * off, no or 0 in any case of letters. */
const char* IWGetConfig(const char* key);
int IWGetConfigBoolean(const char* key, int* value);
void IWSetConfig(const char* key, const char* value);
void IWSetConfigBoolean(const char* key, int value);
int IWSaveUserConfig(void);

/* Image file of a slot. */

/* Conversion: 1 makes IMRdPas deliver 32-bit floats, the only form it has. Returns 0. */
int IMAlCon(int slot, int convert);
/* Dimension counts: z sections, wavelengths, time points, positions, and all sections together. Returns 0 on
 * success. */
int IMRtZWTP(int slot, int* nz, int* nw, int* nt, int* np, int* total);
/* Size in pixels. Returns 0 on success. */
int IMRtXY(int slot, int* nx, int* ny);
/* Pixel spacing x, y, z in microns: as the user had set it in the image window when it was attached, else as
 * the file says, else 1. spacing has room for 3 floats. Returns 0 on success. */
int IMRtDel(int slot, float* spacing);
/* Wavelengths in nanometres (0: unknown); waves has room for IW_MAX_WAVES floats. Returns 0 on success. */
int IMRtWav(int slot, int* count, float* waves);
/* Minimum and maximum of a wavelength over the sections scanned so far. Returns 0 on success, -1 when unknown
 * (min and max are then untouched). */
int IMRtWavMM(int slot, int w, float* min, float* max);
/* A value of a section's extended header: field 1 time stamp in seconds, 2, 3, 4 stage x, y, z in microns, 14
 * known bias of the detector. Returns 0 on success, -1 when the file does not tell (value is then untouched).
 */
int IMRtExHdrValueZWTP(int slot, int z, int w, int t, int p, int field, double* value);
/* Positions on a section for IMRdPas. Returns 0 on success, -1 when the section cannot be had. */
int IMPosnZWTP(int slot, int z, int w, int t, int p);
/* Reads the rectangle xFirst..xLast, yFirst..yLast (inclusive) of the positioned section into buffer, nx * ny
 * floats, row by row. Returns 0 on success, -1 when the rectangle is not inside the image or cannot be read.
 */
int IMRdPas(int slot, float* buffer, int nx, int ny, int xFirst, int xLast, int yFirst, int yLast);
/* Closes the image file and detaches the slot. */
void IMClose(int slot);

#ifdef __cplusplus
}
#endif
#endif
