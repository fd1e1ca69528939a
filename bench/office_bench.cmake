# The bridge's own rooms, so that its remote calls can be made bare.
target_link_libraries(office_bench PRIVATE zp_office)
