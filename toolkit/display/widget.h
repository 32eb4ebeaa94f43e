// The type Widget, for headers that must not include those of X.
#pragma once

struct _WidgetRec;
typedef struct _WidgetRec* Widget;  // as Xt declares it
