#include "frontends/pictures/test/topology_networks.h"

namespace yfw::pictures {

Neighbor neighbor(const std::string &router, const std::string &port) {
    return {router + '#' + port, router, "chassis of " + router, port, ""};
}

Report device(const std::string &name, std::vector<Interface> interfaces) {
    return {"devices/" + name, name, "chassis of " + name, std::move(interfaces)};
}

void PrintTo(const Network &network, std::ostream *to) {
    *to << network.name;
}

std::vector<Network> networks() {
    return {
        {"two_routers_that_see_each_other_have_one_link",
         {device("r1", {{"eth1", {neighbor("r2", "xe-0/0/1")}}}),
          device("r2", {{"xe-0/0/1", {neighbor("r1", "eth1")}}})},
         R"~(2 routers, 1 link, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Links
  r1  eth1  ---  xe-0/0/1  r2
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "r1" -- "r2" [taillabel="eth1", headlabel="xe-0/0/1"];
}
)~"},
        {"a_link_that_only_one_of_two_read_routers_sees_says_so",
         {device("r1", {{"eth1", {}}, {"eth10", {}}}), device("r2", {{"eth7", {neighbor("r1", "eth10")}}})},
         R"~(2 routers, 1 link, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Links
  r1  eth10  <--  eth7  r2  seen from r2 only

Ports without neighbors
  r1  eth1
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "r1" -- "r2" [taillabel="eth10", headlabel="eth7", style=dashed, dir=back];
}
)~"},
        {"a_neighbor_that_is_not_read_is_drawn_and_says_so",
         {device("r1", {{"eth1", {neighbor("r9", "52:54:00:00:00:09")}}})},
         R"~(2 routers, 1 link, all connected

Routers
  r1  chassis of r1
  r9  chassis of r9  not read

Links
  r1  eth1  -->  52:54:00:00:00:09  r9  seen from r1 only, r9 is not read
)~",
         R"~(    "r1" [label="r1"];
    "r9" [label="r9\n(not read)", style=dashed];

    "r1" -- "r9" [taillabel="eth1", headlabel="52:54:00:00:00:09", style=dashed, dir=forward];
}
)~"},
        {"three_routers_that_hear_one_another_on_one_port_each_share_a_segment",
         {device("r1", {{"eth3", {neighbor("r2", "eth3"), neighbor("r4", "eth3")}}}),
          device("r2", {{"eth3", {neighbor("r1", "eth3"), neighbor("r4", "eth3")}}}),
          device("r4", {{"eth3", {neighbor("r1", "eth3"), neighbor("r2", "eth3")}}})},
         R"~(3 routers, no links, 1 shared segment, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2
  r4  chassis of r4

Shared segment 1
  |--  eth3  r1
  |--  eth3  r2
  |--  eth3  r4
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];
    "r4" [label="r4"];

    "segment 1" [shape=point, width=0.12];
    "segment 1" -- "r1" [headlabel="eth3"];
    "segment 1" -- "r2" [headlabel="eth3"];
    "segment 1" -- "r4" [headlabel="eth3"];
}
)~"},
        {"links_that_share_a_port_are_a_segment_and_what_is_heard_one_way_says_so",
         {device("r1", {{"eth3", {neighbor("r2", "eth3")}}}),
          device("r2", {{"eth3", {neighbor("r1", "eth3")}}}),
          device("r4", {{"eth3", {neighbor("r1", "eth3"), neighbor("r9", "eth0")}}})},
         R"~(4 routers, no links, 1 shared segment, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2
  r4  chassis of r4
  r9  chassis of r9  not read

Shared segment 1
  |--  eth3  r1
  |--  eth3  r2
  |--  eth3  r4
  |--  eth0  r9  not read
      one way: r4 eth3 sees r1 eth3
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];
    "r4" [label="r4"];
    "r9" [label="r9\n(not read)", style=dashed];

    "segment 1" [shape=point, width=0.12];
    "segment 1" -- "r1" [headlabel="eth3"];
    "segment 1" -- "r2" [headlabel="eth3"];
    "segment 1" -- "r4" [headlabel="eth3", style=dashed];
    "segment 1" -- "r9" [headlabel="eth0", style=dashed];
}
)~"},
        {"two_parallel_links_stay_two",
         {device("r1", {{"eth10", {neighbor("r2", "eth10")}}, {"eth9", {neighbor("r2", "eth9")}}}),
          device("r2", {{"eth9", {neighbor("r1", "eth9")}}, {"eth10", {neighbor("r1", "eth10")}}})},
         R"~(2 routers, 2 links, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Links
  r1   eth9  ---  eth9   r2
  r1  eth10  ---  eth10  r2
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "r1" -- "r2" [taillabel="eth9", headlabel="eth9"];
    "r1" -- "r2" [taillabel="eth10", headlabel="eth10"];
}
)~"},
        {"a_cable_between_two_ports_of_one_router_is_a_link_of_that_router",
         {device("r1", {{"eth1", {neighbor("r1", "eth2")}}, {"eth2", {neighbor("r1", "eth1")}}})},
         R"~(1 router, 1 link

Routers
  r1  chassis of r1

Links
  r1  eth1  ---  eth2  r1
)~",
         R"~(    "r1" [label="r1"];

    "r1" -- "r1" [taillabel="eth1", headlabel="eth2"];
}
)~"},
        {"a_loop_cable_that_is_heard_at_one_end_names_that_end",
         {device("r1", {{"eth1", {}}, {"eth2", {neighbor("r1", "eth1")}}})},
         R"~(1 router, 1 link

Routers
  r1  chassis of r1

Links
  r1  eth1  <--  eth2  r1  seen from r1 eth2 only
)~",
         R"~(    "r1" [label="r1"];

    "r1" -- "r1" [taillabel="eth1", headlabel="eth2", style=dashed, dir=back];
}
)~"},
        {"a_port_that_hears_itself_is_a_link_to_itself",
         {device("r1", {{"eth1", {neighbor("r1", "eth1")}}})},
         R"~(1 router, 1 link

Routers
  r1  chassis of r1

Links
  r1  eth1  ---  eth1  r1  hears itself
)~",
         R"~(    "r1" [label="r1"];

    "r1" -- "r1" [taillabel="eth1", headlabel="eth1"];
}
)~"},
        {"routers_without_neighbors_stand_alone",
         {device("r2", {}), device("r1", {{"eth2", {}}, {"eth1", {}}})},
         R"~(2 routers, no links, in 2 parts without a connection

Routers
  r1  chassis of r1
  r2  chassis of r2

Ports without neighbors
  r1  eth1 eth2
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

}
)~"},
        {"names_are_kept_whatever_they_hold",
         {device("say \"hi\" & <go>", {{"back\\slash\\", {neighbor("zwölf\nlines", "a \\N b")}}}),
          device("segment 1", {})},
         R"~(3 routers, 1 link, in 2 parts without a connection

Routers
  say "hi" & <go>  chassis of say "hi" & <go>
  segment 1        chassis of segment 1
  zwölf\x0alines   chassis of zwölf\x0alines   not read

Links
  say "hi" & <go>  back\slash\  -->  a \N b  zwölf\x0alines  seen from say "hi" & <go> only, zwölf\x0alines is not read
)~",
         R"~(    "say \"hi\" & <go>" [label="say \"hi\" &amp; <go>"];
    "segment 1" [label="segment 1"];
    "zwölf\\x0alines" [label="zwölf\\x0alines\n(not read)", style=dashed];

    "say \"hi\" & <go>" -- "zwölf\\x0alines" [taillabel="back\\slash\\", headlabel="a \\N b", style=dashed, dir=forward];
}
)~"},
        {"a_segment_never_takes_the_name_of_a_router",
         {device("segment 1", {{"eth1", {neighbor("r2", "a"), neighbor("r3", "b")}}})},
         R"~(3 routers, no links, 1 shared segment, all connected

Routers
  r2         chassis of r2         not read
  r3         chassis of r3         not read
  segment 1  chassis of segment 1

Shared segment 1
  |--  a     r2         not read
  |--  b     r3         not read
  |--  eth1  segment 1
)~",
         R"~(    "r2" [label="r2\n(not read)", style=dashed];
    "r3" [label="r3\n(not read)", style=dashed];
    "segment 1" [label="segment 1"];

    "segment 1'" [shape=point, width=0.12];
    "segment 1'" -- "r2" [headlabel="a", style=dashed];
    "segment 1'" -- "r3" [headlabel="b", style=dashed];
    "segment 1'" -- "segment 1" [headlabel="eth1", style=dashed];
}
)~"},
        {"a_router_without_a_name_goes_by_its_chassis_id",
         {{"devices/a", "", "aa:aa", {{"eth1", {{"r2#eth2", "r2", "bb:bb", "eth2", ""}}}}},
          {"devices/b", "r2", "bb:bb", {{"eth2", {{"x#eth1", "", "aa:aa", "eth1", ""}}}}}},
         R"~(2 routers, 1 link, all connected

Routers
  aa:aa  aa:aa
  r2     bb:bb

Links
  aa:aa  eth1  ---  eth2  r2
)~",
         R"~(    "aa:aa" [label="aa:aa"];
    "r2" [label="r2"];

    "aa:aa" -- "r2" [taillabel="eth1", headlabel="eth2"];
}
)~"},
        {"a_device_that_tells_nothing_goes_by_its_place_and_such_a_neighbor_by_its_id",
         {{"devices/a", "", "", {{"eth1", {{"[DISABLED]#p", "", "", "", ""}}}}}},
         R"~(2 routers, 1 link, all connected

Routers
  [DISABLED]#p  -  not read
  devices/a     -

Links
  [DISABLED]#p  ?  <--  eth1  devices/a  seen from devices/a only, [DISABLED]#p is not read
)~",
         R"~(    "[DISABLED]#p" [label="[DISABLED]#p\n(not read)", style=dashed];
    "devices/a" [label="devices/a"];

    "[DISABLED]#p" -- "devices/a" [taillabel="?", headlabel="eth1", style=dashed, dir=back];
}
)~"},
        {"routers_of_one_name_are_told_apart_by_their_chassis_ids",
         {{"devices/a", "sw", "aa", {{"p1", {{"sw#p2", "sw", "bb", "p2", ""}}}}},
          {"devices/b", "sw", "bb", {{"p2", {{"sw#p1", "sw", "aa", "p1", ""}}}}}},
         R"~(2 routers, 1 link, all connected

Routers
  sw (aa)  aa
  sw (bb)  bb

Links
  sw (aa)  p1  ---  p2  sw (bb)
)~",
         R"~(    "sw (aa)" [label="sw (aa)"];
    "sw (bb)" [label="sw (bb)"];

    "sw (aa)" -- "sw (bb)" [taillabel="p1", headlabel="p2"];
}
)~"},
        {"unread_neighbors_of_one_name_are_told_apart_too_and_one_that_fits_both_stays_by_itself",
         {device("r1", {{"eth1", {{"1", "sw", "aa", "p", ""}}},
                        {"eth2", {{"2", "sw", "bb", "p", ""}}},
                        {"eth3", {{"3", "sw", "", "p", ""}}},
                        {"eth4", {{"4", "", "bb", "q", ""}}}})},
         R"~(4 routers, 4 links, all connected

Routers
  r1       chassis of r1
  sw       -              not read
  sw (aa)  aa             not read
  sw (bb)  bb             not read

Links
  r1  eth1  -->  p  sw (aa)  seen from r1 only, sw (aa) is not read
  r1  eth2  -->  p  sw (bb)  seen from r1 only, sw (bb) is not read
  r1  eth3  -->  p  sw       seen from r1 only, sw is not read
  r1  eth4  -->  q  sw (bb)  seen from r1 only, sw (bb) is not read
)~",
         R"~(    "r1" [label="r1"];
    "sw" [label="sw\n(not read)", style=dashed];
    "sw (aa)" [label="sw (aa)\n(not read)", style=dashed];
    "sw (bb)" [label="sw (bb)\n(not read)", style=dashed];

    "r1" -- "sw (aa)" [taillabel="eth1", headlabel="p", style=dashed, dir=forward];
    "r1" -- "sw (bb)" [taillabel="eth2", headlabel="p", style=dashed, dir=forward];
    "r1" -- "sw" [taillabel="eth3", headlabel="p", style=dashed, dir=forward];
    "r1" -- "sw (bb)" [taillabel="eth4", headlabel="q", style=dashed, dir=forward];
}
)~"},
        {"a_port_id_that_is_no_interface_is_found_by_the_port_description",
         {device("r1", {{"eth1", {{"r2#m", "r2", "chassis of r2", "52:54:00:00:00:02", "eth5"}}}}),
          device("r2", {{"eth5", {{"r1#m", "r1", "chassis of r1", "52:54:00:00:00:01", "eth1"}}}})},
         R"~(2 routers, 1 link, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Links
  r1  eth1 (52:54:00:00:00:01)  ---  eth5 (52:54:00:00:00:02)  r2
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "r1" -- "r2" [taillabel="eth1 (52:54:00:00:00:01)", headlabel="eth5 (52:54:00:00:00:02)"];
}
)~"},
        {"a_port_that_is_not_named_is_the_only_one_that_hears_back",
         {device("r1", {{"eth1", {{"r2#", "r2", "chassis of r2", "", ""}}}}),
          device("r2", {{"eth4", {}}, {"eth5", {neighbor("r1", "eth1")}}})},
         R"~(2 routers, 1 link, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Links
  r1  eth1  ---  eth5  r2

Ports without neighbors
  r2  eth4
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "r1" -- "r2" [taillabel="eth1", headlabel="eth5"];
}
)~"},
        {"of_two_unknown_port_ids_neither_is_guessed",
         {device(
              "r1",
              {{"eth1", {{"r2#x", "r2", "chassis of r2", "x", ""}, {"r2#y", "r2", "chassis of r2", "y", ""}}}}),
          device("r2", {{"eth5", {neighbor("r1", "eth1")}}})},
         R"~(2 routers, no links, 1 shared segment, all connected

Routers
  r1  chassis of r1
  r2  chassis of r2

Shared segment 1
  |--  eth1  r1
  |--  eth5  r2
  |--  x     r2
  |--  y     r2
      one way: r1 eth1 sees r2 x
      one way: r1 eth1 sees r2 y
      one way: r2 eth5 sees r1 eth1
)~",
         R"~(    "r1" [label="r1"];
    "r2" [label="r2"];

    "segment 1" [shape=point, width=0.12];
    "segment 1" -- "r1" [headlabel="eth1"];
    "segment 1" -- "r2" [headlabel="eth5", style=dashed];
    "segment 1" -- "r2" [headlabel="x", style=dashed];
    "segment 1" -- "r2" [headlabel="y", style=dashed];
}
)~"},
        {"nothing_read_is_nothing_drawn", {}, "0 routers, no links\n\nRouters\n", "\n}\n"},
    };
}

} // namespace yfw::pictures
