#include "platform/pipewire/cycle_reader.h"

#include <spa/param/profiler.h>
#include <spa/pod/iter.h>
#include <spa/pod/parser.h>

namespace tolvenary
{

namespace
{

/// Not triggered, triggered and awake come before it; after it, in later versions, inactive, for whom nobody waits.
constexpr std::int32_t finished = 3;

void readFollower(const spa_pod *block, std::map<GlobalId, bool> &hasFinished)
{
    spa_pod_parser parser{};
    spa_pod_parser_pod(&parser, block);
    spa_pod_frame frame{};
    std::int32_t id = 0;
    const char *name = nullptr;
    std::int64_t time = 0; // of the last signal, of this one, when it woke up, and when it had finished
    std::int32_t status = 0;
    if (spa_pod_parser_push_struct(&parser, &frame) < 0 || spa_pod_parser_get_int(&parser, &id) < 0 ||
        spa_pod_parser_get_string(&parser, &name) < 0)
        return;
    for (int i = 0; i < 4; ++i) {
        if (spa_pod_parser_get_long(&parser, &time) < 0)
            return;
    }
    if (spa_pod_parser_get_int(&parser, &status) < 0)
        return;
    hasFinished[static_cast<GlobalId>(id)] = status >= finished;
}

void readCycle(const spa_pod_object &cycle, std::map<GlobalId, bool> &hasFinished)
{
    const spa_pod_object_body &body = cycle.body;
    for (const spa_pod_prop *property = spa_pod_prop_first(&body);
         spa_pod_prop_is_inside(&body, SPA_POD_BODY_SIZE(&cycle), property); property = spa_pod_prop_next(property)) {
        if (property->key == SPA_PROFILER_followerBlock)
            readFollower(&property->value, hasFinished);
    }
}

} // namespace

void readFinished(const spa_pod *cycles, std::map<GlobalId, bool> &hasFinished)
{
    spa_pod_parser parser{};
    spa_pod_parser_pod(&parser, cycles);
    spa_pod_frame frame{};
    if (spa_pod_parser_push_struct(&parser, &frame) < 0)
        return;
    while (const spa_pod *cycle = spa_pod_parser_next(&parser)) {
        if (spa_pod_is_object_type(cycle, SPA_TYPE_OBJECT_Profiler) != 0)
            readCycle(*reinterpret_cast<const spa_pod_object *>(cycle), hasFinished);
    }
}

} // namespace tolvenary
