/* A controller's directories in a temporary place: settings, gas data, no downtime. */
#ifndef HOST_WORKPLACE_H
#define HOST_WORKPLACE_H

/* Makes the place and points SETTINGS, SYSTEM and PATHDB at it; removed at the end of the process that made it. Returns 0, or
 * 1 with a line on standard error. */
int workplace_make(const char* gas_data);

#endif
