// The widget handle, for headers that must not pull in the window system's.
#pragma once

struct _WidgetRec;
typedef struct _WidgetRec* Widget;  // as the Intrinsics declare it
