// Generated from model/schema and bridge/values.api by gen/emit_bridge.py: edit those, not this.
#pragma once

#define ZOL_MODEL_NUMBER 0xd5d88ea3u
